#pragma once

#include <cstddef>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

/// Takes apart what the program sends over a serial line: a letter, the length of the payload in
/// two bytes, high byte first, the payload. There is no line feed in this direction.
///
/// A letter that is none of the program's is skipped, so noise between packets does no harm.
/// Nothing else is there to synchronise on: after a pause, reset() begins anew.
class TypedPacketReader {
public:
    struct TypedPacket {
        char type;
        std::string payload;
    };

    void add(std::string_view bytes);

    /// The oldest complete packet.
    std::optional<TypedPacket> next();

    /// Whether a packet has begun and is not complete.
    bool isInside() const { return !m_head.empty(); }

    /// Forgets the packet that is not complete.
    void reset();

private:
    std::string_view addToHead(std::string_view bytes);
    std::string_view addToPayload(std::string_view bytes);
    std::size_t length() const;

    std::string m_head;
    std::string m_payload;
    std::deque<TypedPacket> m_packets;
};
