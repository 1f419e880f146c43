#include "TypedPackets.h"

#include "BundleWalk.h"
#include "Packet.h"

#include <algorithm>
#include <array>

namespace typedpackets {

namespace {

constexpr std::size_t maxPayload = 0xFFFF;

struct Counterpart {
    std::string_view packetType;
    char letter;
};

constexpr std::array<Counterpart, 3> toProgram{{{"CHAT", 'M'}, {"SOFT", 'S'}, {"VARS", 'V'}}};
constexpr std::array<Counterpart, 4> toInstrument{
    {{"KEYS", 'K'}, {"COMI", 'C'}, {"CHAT", 'M'}, {"FXTO", 'Y'}}};

std::string fromBundle(std::string_view body) {
    std::string bytes;
    BundleWalk walk(body);
    while (const auto item = walk.next())
        bytes += build(item->code, item->data);
    return bytes;
}

} // namespace

std::string build(char type, std::string_view payload) {
    payload = payload.substr(0, maxPayload);
    std::string bytes{type, '\n', static_cast<char>(payload.size() >> 8U),
                      static_cast<char>(payload.size() & 0xFFU)};
    return bytes.append(payload);
}

std::string fromPacket(std::string_view packet) {
    const auto view = packet::parse(packet);
    if (!view)
        return {};
    if (view->type == "BNDL")
        return fromBundle(view->body);
    const auto* const found = std::ranges::find(toProgram, view->type, &Counterpart::packetType);
    return found == toProgram.end() ? std::string() : build(found->letter, view->body);
}

std::optional<std::string> toPacket(char type, std::string_view payload) {
    const auto* const found = std::ranges::find(toInstrument, type, &Counterpart::letter);
    if (found == toInstrument.end())
        return std::nullopt;
    return packet::build(found->packetType, payload);
}

} // namespace typedpackets
