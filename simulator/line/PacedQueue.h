#pragma once

#include <chrono>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// One direction of a serial line: bytes go in at once and come out one after the other, as fast as
/// the line carries them. Time is what the caller says it is.
class PacedQueue {
public:
    using Clock = std::chrono::steady_clock;

    /// Bits on the line for one byte: start bit, eight data bits, two stop bits.
    static constexpr int bitsPerByte = 11;

    /// `baud` bits a second; 0 for a line that takes no time.
    explicit PacedQueue(int baud);

    void push(std::string_view bytes, Clock::time_point now);

    /// The bytes that have come out by now.
    std::string pop(Clock::time_point now);

    /// When the next byte comes out; nothing while the queue is empty.
    std::optional<Clock::time_point> nextDue() const;

    /// Nothing comes out for a while; what was due comes later by that much.
    void stall(Clock::duration pause) { m_start += pause; }

    /// Forgets what has not come out.
    void clear() { m_bytes.clear(); }

    std::size_t size() const { return m_bytes.size(); }

private:
    Clock::duration m_byteTime; ///< zero on a line that takes no time
    std::string m_bytes;
    Clock::time_point m_start; ///< when the first byte began to pass
};
