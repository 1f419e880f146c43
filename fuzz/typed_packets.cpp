#include "FileReceiver.h"
#include "FileSender.h"
#include "TypedPacketReader.h"
#include "TypedPackets.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// The input is what a program sends to the simulated instrument: the reader loses and invents
/// nothing, and no transfer bytes get a transfer to store more than it was sent.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const FileTransfer::Clock::time_point now = FileTransfer::Clock::time_point();
    FileReceiver receiver({}, {}, now);
    FileSender sender(std::string(3000, 'f'), {}, {}, now);

    TypedPacketReader whole;
    whole.add(bytes);
    TypedPacketReader chunked;
    for (const char byte : bytes)
        chunked.add(std::string_view(&byte, 1));
    std::size_t taken = 0;
    while (const auto packet = whole.next()) {
        const auto same = chunked.next();
        if (!same || same->type != packet->type || same->payload != packet->payload)
            std::abort();
        taken += packet->payload.size();
        if (packet->type == 'X') {
            receiver.receive(packet->payload, now);
            sender.receive(packet->payload, now);
        } else if (!typedpackets::toPacket(packet->type, packet->payload)) {
            std::abort();
        }
    }
    if (chunked.next() || taken > size || receiver.file().size() > taken)
        std::abort();
    if (receiver.takeOutput().size() > size + 1)
        std::abort();
    return 0;
}
