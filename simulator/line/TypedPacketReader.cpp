#include "TypedPacketReader.h"

#include <algorithm>
#include <utility>

namespace {
constexpr std::string_view letters = "KCMYX";
constexpr std::size_t headSize = 3;
} // namespace

void TypedPacketReader::add(std::string_view bytes) {
    while (!bytes.empty())
        bytes = m_head.size() < headSize ? addToHead(bytes) : addToPayload(bytes);
}

std::string_view TypedPacketReader::addToHead(std::string_view bytes) {
    if (m_head.empty()) {
        bytes.remove_prefix(std::min(bytes.find_first_of(letters), bytes.size()));
        if (bytes.empty())
            return bytes;
    }
    m_head += bytes.front();
    bytes.remove_prefix(1);
    // A packet without payload is complete with its head.
    return m_head.size() == headSize && length() == 0 ? addToPayload(bytes) : bytes;
}

std::string_view TypedPacketReader::addToPayload(std::string_view bytes) {
    const std::size_t run = std::min(length() - m_payload.size(), bytes.size());
    m_payload.append(bytes.substr(0, run));
    if (m_payload.size() == length()) {
        m_packets.push_back({m_head.front(), std::exchange(m_payload, {})});
        m_head.clear();
    }
    return bytes.substr(run);
}

std::size_t TypedPacketReader::length() const {
    return (static_cast<std::size_t>(static_cast<unsigned char>(m_head[1])) << 8U) |
           static_cast<unsigned char>(m_head[2]);
}

std::optional<TypedPacketReader::TypedPacket> TypedPacketReader::next() {
    if (m_packets.empty())
        return std::nullopt;
    TypedPacket packet = std::move(m_packets.front());
    m_packets.pop_front();
    return packet;
}

void TypedPacketReader::reset() {
    m_head.clear();
    m_payload.clear();
}
