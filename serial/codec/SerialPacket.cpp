#include "SerialPacket.h"

namespace serialpacket {

std::string build(char type, std::string_view payload) {
    payload = payload.substr(0, maxPayload);
    std::string bytes{type, static_cast<char>(payload.size() >> 8U),
                      static_cast<char>(payload.size() & 0xFFU)};
    bytes += payload;
    return bytes;
}

std::string buildAll(char type, std::string_view payload) {
    std::string bytes = build(type, payload);
    while (payload.size() > maxPayload) {
        payload.remove_prefix(maxPayload);
        bytes += build(type, payload);
    }
    return bytes;
}

} // namespace serialpacket
