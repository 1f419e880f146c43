// What an instrument that sends as fast as the computer's own loopback allows does to the others:
// how long a key typed for another tile takes to the wire meanwhile, what its packets cost the GUI
// thread, and how long the last state of its screen takes once the flood is over.

#include "ScreenFeed.h"
#include "Table.h"
#include "TileWindow.h"

#include <cstdio>
#include <stdexcept>

namespace {

constexpr int tiles = 4;
constexpr int runs = 5;
constexpr int keysEachRun = 40;
constexpr double micro = 1e6;
constexpr double milli = 1e3;

struct Flood {
    const char* name;
    /// Sent again and again.
    std::string bytes;
    /// Packets in these bytes.
    int packets = 1;
};

std::string times(const std::string& piece, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i)
        bytes += piece;
    return bytes;
}

std::vector<Flood> floods() {
    using screenfeed::frameOf;
    using screenfeed::item;
    constexpr int many = 100;
    constexpr int manyItems = 170'000;
    std::string updates;
    for (int i = 0; i < many; ++i)
        updates += screenfeed::frame(1, i, false);
    return {
        {"nothing", "", 1},
        {"screen updates", updates, many},
        {"screen updates of one byte", times(frameOf("BNDL", item('T', "x")), many), many},
        {"1 MiB updates of tiny items", frameOf("BNDL", times(item('T', "x"), manyItems)), 1},
        {"pictures", times(frameOf("BNDL", item('G', std::string(1920, 'x'))), many), many},
        {"frames without content", times(std::string("<D>\0\0\0\0", 7), many), many},
        {"lines of chat", times(frameOf("CHAT", "hello"), many), many},
    };
}

void measure(const Flood& flood, Table& table, const Display& display, const Home& home) {
    TileWindow window(display, home, tiles);
    std::vector<double> latencies;
    std::vector<double> packets;
    std::vector<double> costs;
    for (int run = 0; run < runs; ++run) {
        window.instruments().flood(flood.bytes);
        const double start = now();
        const double used = window.process().firstThreadSeconds();
        const long long before = window.instruments().flooded();
        for (int key = 0; key < keysEachRun; ++key) {
            pauseFor(0.005 + 0.0007 * (key % 17));
            latencies.push_back(window.keyToWire() * milli);
        }
        const double count = static_cast<double>(window.instruments().flooded() - before) *
                             flood.packets / static_cast<double>(flood.bytes.size() + 1);
        packets.push_back(count / (now() - start));
        costs.push_back((window.process().firstThreadSeconds() - used) / count * micro);
    }
    const bool isFlood = !flood.bytes.empty();
    table.add({flood.name, isFlood ? fixed(median(packets), 0) : "",
               isFlood ? fixed(median(costs), 2) : "", fixed(percentile(latencies, 0.5), 2),
               fixed(percentile(latencies, 0.99), 2), fixed(percentile(latencies, 1), 2)});
}

} // namespace

int main() {
    try {
        const Display display(1280, 1024);
        const Home home;
        Table table({"one instrument floods with", "packets/s taken", "GUI thread us/packet",
                     "key to wire p50 ms", "p99 ms", "worst ms"});
        for (const Flood& flood : floods())
            measure(flood, table, display, home);
        std::puts("### A key for another tile while one of four instruments floods the window");
        table.print();
    } catch (const std::exception& error) {
        std::printf("Nothing measured: %s\n", error.what());
        return 1;
    }
    return 0;
}
