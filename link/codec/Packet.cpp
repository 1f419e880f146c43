#include "Packet.h"

#include <array>

namespace packet {

std::string fourByteValue(unsigned int value) {
    const std::array<unsigned int, 4> shifts{24, 16, 8, 0};
    std::string bytes;
    for (const unsigned int shift : shifts)
        bytes.push_back(static_cast<char>((value >> shift) & 0xFFU));
    return bytes;
}

unsigned int unsignedFromBytes(std::string_view bytes) {
    unsigned int value = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        const unsigned char byte = i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0;
        value = (value << 8U) | byte;
    }
    return value;
}

std::string bundle(std::string_view head, std::string_view data) {
    std::string bytes(head);
    bytes += fourByteValue(static_cast<unsigned int>(data.size()));
    bytes += data;
    return bytes;
}

std::string build(std::string_view type, std::string_view body) {
    std::string bytes(packet::headerSize - packet::typeSize, '\0');
    bytes += type;
    bytes += body;
    return bytes;
}

std::optional<View> parse(std::string_view bytes) {
    if (bytes.size() < headerSize)
        return std::nullopt;
    return View{bytes.substr(headerSize - typeSize, typeSize), bytes.substr(headerSize)};
}

std::string_view untilNul(std::string_view body) {
    return body.substr(0, body.find('\0'));
}

} // namespace packet
