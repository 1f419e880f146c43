// Feeds instrument packets to a tile with a real display, as a link does. The input is a sequence
// of packets, each behind its length in two bytes, so that what one leaves behind meets the next.

#include "ConnectionWidget.h"

#include <QApplication>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>

namespace {

struct Stage {
    Stage() {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        application = std::make_unique<QApplication>(argumentCount, arguments);
    }

    int argumentCount = 1;
    char name[16] = "incoming_packet";
    char* arguments[2] = {name, nullptr};
    std::unique_ptr<QApplication> application;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Never taken down: the exit of a fuzzer is no time for an application to end.
    [[maybe_unused]] static const Stage& stage = *new Stage;
    // A tile an input: an input shows the same whatever came before it, and no renderer is still
    // painting when the program ends.
    ConnectionWidget tile;
    tile.show();
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    std::size_t at = 0;
    while (at + 2 <= size) {
        const std::size_t length = std::size_t{data[at]} << 8U | data[at + 1];
        const std::string_view packet = input.substr(at + 2, length);
        tile.incomingPacket(std::string(packet));
        at += 2 + packet.size();
    }
    // Paints what has been rendered by now; bounded, because a cursor blinks for ever.
    QCoreApplication::processEvents();
    return 0;
}
