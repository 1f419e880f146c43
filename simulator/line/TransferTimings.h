#pragma once

#include <chrono>

/// How long the instrument waits in a file transfer.
struct TransferTimings {
    std::chrono::milliseconds packet = std::chrono::seconds(10);
    std::chrono::milliseconds character = std::chrono::seconds(1);
    int attempts = 5; ///< times that a handshake is tried again
    int retries = 5;  ///< times that a block is tried again
};
