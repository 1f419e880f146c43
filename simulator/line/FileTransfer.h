#pragma once

#include "LineFaults.h"
#include "PacedQueue.h"
#include "TransferTimings.h"

#include <optional>
#include <string>
#include <string_view>
#include <utility>

/// The instrument's side of one file transfer, apart from any wire: transfer bytes come in,
/// transfer bytes go out, time goes by when it is told.
class FileTransfer {
public:
    using Clock = PacedQueue::Clock;

    /// How a transfer ends.
    enum class Outcome { Done, TimedOut, TooNoisy, OutOfSequence, Aborted, AbortedByPeer };

    FileTransfer(const LineFaults& faults, const TransferTimings& timings)
        : m_faults(faults), m_timings(timings) {}
    FileTransfer(const FileTransfer&) = delete;
    FileTransfer& operator=(const FileTransfer&) = delete;
    virtual ~FileTransfer() = default;

    /// Takes transfer bytes from the program.
    virtual void receive(std::string_view bytes, Clock::time_point now) = 0;

    /// Lets time go by: gives up waiting if it is time to.
    void advance(Clock::time_point now) {
        if (!m_outcome && m_deadline && now >= *m_deadline)
            timeOut(now);
    }

    /// The program has stopped the transfer.
    void stop() { end(Outcome::AbortedByPeer); }

    /// When advance() is to be called at the latest.
    std::optional<Clock::time_point> deadline() const { return m_deadline; }

    /// The transfer bytes that are to be sent now.
    std::string takeOutput() { return std::exchange(m_output, {}); }

    /// How it ended; nothing while it runs.
    std::optional<Outcome> outcome() const { return m_outcome; }

protected:
    virtual void timeOut(Clock::time_point now) = 0;

    const LineFaults& faults() const { return m_faults; }
    const TransferTimings& timings() const { return m_timings; }

    /// Whether a handshake that was not answered may be tried once more.
    bool mayTryAgain() { return m_attempts++ < m_timings.attempts; }

    /// What either end makes of the reply to a block, given or received: true when the block is to
    /// come again. Any other reply that refuses it ends the transfer; `ifAborted` is how, when the
    /// receiver has given up. A reply that is none changes nothing.
    bool blockComesAgain(int reply, Outcome ifAborted);
    /// The block was accepted: the next one may be refused as often.
    void blockIsDone() { m_refusals = 0; }

    void send(std::string_view bytes) { m_output += bytes; }
    void send(int byte) { m_output += static_cast<char>(byte); }
    void waitUntil(Clock::time_point deadline) { m_deadline = deadline; }
    void end(Outcome outcome) {
        if (!m_outcome)
            m_outcome = outcome;
        m_deadline.reset();
    }

private:
    LineFaults m_faults;
    TransferTimings m_timings;
    int m_attempts = 0;
    int m_refusals = 0;
    std::string m_output;
    std::optional<Clock::time_point> m_deadline;
    std::optional<Outcome> m_outcome;
};
