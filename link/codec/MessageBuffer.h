#pragma once

#include "PayloadPool.h"

#include <cstdint>
#include <deque>
#include <string>
#include <utility>

/// Reassembles frames from a TCP byte stream: "<", tag, ">", a 4-byte big-endian length, payload.
///
/// Owned by a link by value; one thread. Chunks may split a frame anywhere. A frame is never
/// abandoned, and any length up to 4 GiB - 1 is accepted, but memory grows only with bytes that
/// have arrived.
class MessageBuffer {
public:
    /// Feeds a received chunk of `count` bytes; a count of 0 does nothing.
    void Add(const char* bytes, unsigned int count);

    /// Moves the oldest completed message out; false when there is none, and then the strings are
    /// left as they are. Passing the same strings each time saves allocations.
    bool NextMessage(std::string& tag, std::string& payload);

private:
    enum class State { AwaitingOpen, InTag, Length1, Length2, Length3, Length4, InPayload };

    void _LockMessage();

    const char* addToTag(const char* next, const char* end);
    void addLengthByte(unsigned char byte);
    const char* addToPayload(const char* next, const char* end);

    std::deque<std::pair<std::string, std::string>> m_messages;
    State m_state = State::AwaitingOpen;
    std::string m_tag;
    std::string m_payload;
    std::uint32_t m_length = 0;
    PayloadPool m_pool;
};
