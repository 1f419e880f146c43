#include "LTermBuffer.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// Everything that a parser gives out, in order.
struct Output {
    std::string packets;
    std::string transfer;
    bool operator==(const Output&) const = default;
};

void drain(LTermBuffer& buffer, Output& output) {
    unsigned char type = 0;
    std::string payload;
    while (buffer.nextItem(type, payload)) {
        if (type == 'X' || payload.empty())
            std::abort();
        output.packets += static_cast<char>(type);
        output.packets += std::to_string(payload.size()) + ':' + payload;
    }
    while (buffer.hasFX())
        output.transfer += static_cast<char>(buffer.GetFX());
}

} // namespace

/// The first byte says how large the chunks are; the same bytes in one piece must give the same.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0)
        return 0;
    const std::size_t step = static_cast<std::size_t>(data[0]) + 1;
    const char* bytes = reinterpret_cast<const char*>(data) + 1;
    const std::size_t count = size - 1;

    Output whole;
    LTermBuffer inOnePiece;
    inOnePiece.Add(bytes, static_cast<unsigned int>(count));
    drain(inOnePiece, whole);

    Output chunked;
    LTermBuffer inChunks;
    for (std::size_t at = 0; at < count; at += step) {
        inChunks.Add(bytes + at, static_cast<unsigned int>(std::min(step, count - at)));
        drain(inChunks, chunked);
    }
    if (!(chunked == whole))
        std::abort();

    LTermBuffer service;
    service.Add(bytes, static_cast<unsigned int>(count));
    unsigned int mode = 0;
    while (service.hasFX()) {
        if (!service.IncomingFXPacket(mode) && mode > 1)
            std::abort();
    }
    return 0;
}
