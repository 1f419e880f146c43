#pragma once

#include "PayloadPool.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <utility>

/// Takes the byte stream of a serial line apart: complete packets on one side, the bytes of file
/// transfers as one continuous stream on the other.
///
/// A packet from the instrument is a type letter, a line feed, a 2-byte big-endian length and the
/// payload. There is no start mark, escape, trailer or checksum; the letter with its line feed is
/// all that there is to synchronise on. Chunks may split a packet anywhere.
///
/// Owned by the worker of a serial link by value; one thread.
class LTermBuffer {
public:
    /// What the complete packets that nobody has taken may cost, in bytes: their payloads and
    /// packetCost for each. Beyond that the oldest are dropped, for the newest screen counts. They
    /// pile up while a file transfer runs, which an instrument may never end.
    static constexpr std::size_t maxQueued = std::size_t{4} * 1024 * 1024;
    static constexpr std::size_t packetCost = 64;

    /// Feeds `count` received bytes; a count of 0 does nothing.
    void Add(const char* bytes, unsigned int count);

    /// Moves the oldest complete packet out; false when there is none. Passing the same string each
    /// time saves allocations.
    bool nextItem(unsigned char& type, std::string& payload);

    /// Whether GetFX() has a byte to give.
    bool hasFX() const { return !m_fxBytes.empty(); }
    /// Takes the oldest file-transfer byte. An empty queue gives 0, like a received 0: ask hasFX().
    unsigned char GetFX();
    /// Forgets the file-transfer bytes of a transfer that was given up: those that are there, and
    /// those still to come until a packet begins like a request. What is left of a file on the line
    /// would be full of bytes that look like one.
    void dropFX();
    /// Discards file-transfer bytes up to and including one that decides what is to be done: true
    /// when the instrument sends a file (ENQ, 'L': mode 0; 'R': mode 1), false when it may be sent
    /// one ('K': mode 0; 'Q': mode 1) or when the bytes ran out, which leaves the mode alone.
    bool IncomingFXPacket(unsigned int& mode);

private:
    enum class State {
        Type,
        Separator,
        LengthHigh,
        LengthLow,
        Payload,
        FileTransfer,
        DroppedTransfer
    };

    void startPayload(unsigned char lengthLow);
    void startTransferBytes(char first);
    const char* takePayload(const char* next, const char* end);
    void queuePayload();

    std::string m_payload;
    std::deque<char> m_fxBytes;
    std::deque<std::pair<unsigned char, std::string>> m_packets;
    std::size_t m_queued = 0; ///< what they cost
    PayloadPool m_pool;
    unsigned char m_type = 0;
    State m_state = State::Type;
    unsigned char m_lengthHigh = 0;
    std::uint32_t m_length = 0;
    std::uint32_t m_taken = 0;
    bool m_dropping = false;
};
