#include "Instrument.h"
#include "FrameReader.h"
#include "MessageBuffer.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

namespace {

void require(bool sound) {
    if (!sound)
        std::abort();
}

std::vector<std::string> readInChunks(std::string_view bytes, std::size_t step, bool& refused) {
    std::vector<std::string> packets;
    FrameReader reader;
    for (std::size_t at = 0; at < bytes.size(); at += step) {
        reader.add(bytes.substr(at, step));
        while (auto packet = reader.nextPacket())
            packets.push_back(std::move(*packet));
    }
    refused = reader.hasRefused();
    return packets;
}

/// The operator's program must find the same packets in the same bytes, and may find more only
/// where the instrument has given up.
void compareWithTheOtherEnd(std::string_view bytes, const std::vector<std::string>& packets,
                            bool refused) {
    MessageBuffer buffer;
    buffer.Add(bytes.data(), static_cast<unsigned int>(bytes.size()));
    std::vector<std::string> messages;
    std::string tag;
    std::string payload;
    while (buffer.NextMessage(tag, payload)) {
        if (tag == "D")
            messages.push_back(payload);
    }
    require(messages.size() == packets.size() || (refused && messages.size() > packets.size()));
    require(std::equal(packets.begin(), packets.end(), messages.begin()));
}

} // namespace

/// The first byte says how large the chunks are, the second on which page the instrument is.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 2)
        return 0;
    const std::string_view bytes(reinterpret_cast<const char*>(data) + 2, size - 2);
    bool refused = false;
    const std::vector<std::string> packets =
        readInChunks(bytes, static_cast<std::size_t>(data[0]) + 1, refused);
    compareWithTheOtherEnd(bytes, packets, refused);

    Instrument instrument({.page = allPages.at(data[1] % allPages.size())});
    for (const std::string& packet : packets) {
        const Instrument::Response response = instrument.receive(packet);
        for (const std::string& answer : response.packets)
            require(answer.substr(0, 8) == std::string("\0\0\0\0CHAT", 8));
        instrument.tick(std::chrono::milliseconds(250));
        const std::size_t update = instrument.updatePacket().size();
        require(update == 8 + 5 + 320 + 5 + 320 + 5 + 3 || update == 8 + 5 + 1920);
    }
    return 0;
}
