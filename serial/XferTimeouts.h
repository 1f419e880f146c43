#pragma once

/// How long a file transfer waits for the other end, in milliseconds.
struct XferTimeouts {
    /// For a handshake byte, a block start, a header byte or a reply.
    long packet = 10000;
    /// For the ACK after ENQ, and for each byte inside a block.
    long character = 1000;
};
