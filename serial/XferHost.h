#pragma once

#include <string>

/// The byte channel under a file transfer, and the ear for what it reports. The serial link's
/// worker is one; a test can be one and play the instrument. Called from the thread that runs the
/// transfer.
class XferHost {
public:
    /// What GetChar() returns when nothing came in time, and a send that was not done in time.
    static constexpr int timedOut = -1;
    /// What every operation returns once the transfer is to be given up.
    static constexpr int aborted = -2;

    /// The next byte, 0 to 255; `timedOut` after `timeoutMs` milliseconds; `aborted`.
    virtual int GetChar(long timeoutMs) = 0;
    /// Sends one byte; 0, `timedOut` or `aborted`.
    virtual int SendChar(short c, long timeoutMs) = 0;
    /// Sends bytes; 0, `timedOut` or `aborted`.
    virtual int SendString(const std::string& bytes) = 0;
    /// A status or error text for the operator's log, one line without its end.
    virtual void ReportError(const std::string& text) = 0;
    /// Block number `block` is done; `count` is its number of data bytes when sending, its length
    /// field (two more) when receiving.
    virtual void ReportProgress(int block, int count) = 0;

protected:
    ~XferHost() = default;
};
