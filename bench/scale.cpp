// What a tile costs in a window of 1 to 256 of them, with instruments that send ten updates a
// second each, and what an operator would otherwise open costs on the same display in the same run:
// a terminal window or a VNC viewer for each instrument. Display servers are not counted anywhere.

#include "ScreenFeed.h"
#include "Table.h"
#include "TileWindow.h"

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <stdexcept>

namespace {

constexpr int runs = 5;
constexpr double settleSeconds = 1.5;
constexpr double runSeconds = 2;
constexpr int keysEachRun = 40;
constexpr int rivals = 16;
constexpr double micro = 1e6;
constexpr double KiBEachMiB = 1024;

/// What a number of tiles cost: medians of several runs.
struct Costs {
    double updatesEachSecond = 0;
    double microseconds = 0;    ///< of the processor for each update
    double guiMicroseconds = 0; ///< of which on the GUI thread
    double coreShare = 0;       ///< of one core, in per cent
    double residentKiB = 0;
    int threads = 0;
    std::vector<double> latencies; ///< from key to screen, in milliseconds
};

Costs costsOf(TileWindow& window) {
    std::vector<std::vector<double>> samples(4);
    for (int run = 0; run < runs; ++run) {
        const double start = now();
        const long updates = window.instruments().updates();
        const double all = window.process().processorSeconds();
        const double gui = window.process().firstThreadSeconds();
        pauseFor(runSeconds);
        const double span = now() - start;
        const double used = window.process().processorSeconds() - all;
        const double count = static_cast<double>(window.instruments().updates() - updates);
        samples[0].push_back(count / span);
        samples[1].push_back(used / count * micro);
        samples[2].push_back((window.process().firstThreadSeconds() - gui) / count * micro);
        samples[3].push_back(used / span * 100);
    }
    Costs costs;
    costs.updatesEachSecond = median(samples[0]);
    costs.microseconds = median(samples[1]);
    costs.guiMicroseconds = median(samples[2]);
    costs.coreShare = median(samples[3]);
    costs.residentKiB = window.process().residentKiB();
    costs.threads = window.process().threads();
    for (int key = 0; key < runs * keysEachRun; ++key) {
        // Never in step with the updates.
        pauseFor(0.005 + 0.0007 * (key % 17));
        costs.latencies.push_back(window.keyToScreen() * 1e3);
    }
    return costs;
}

void compareTiles(const Display& display, const Home& home) {
    Table table({"tiles", "updates/s", "CPU us/update", "of it GUI thread", "% of one core",
                 "resident MiB", "KiB per added tile", "threads", "key to screen p50 ms",
                 "p99 ms"});
    std::optional<Costs> one;
    std::optional<double> four;
    double growth = 0;
    for (const int count : {1, 4, 16, 64, 256}) {
        TileWindow tiles(display, home, count);
        const Costs costs = costsOf(tiles);
        if (!one)
            one = costs;
        if (count == 4)
            four = costs.microseconds;
        if (four)
            growth = (costs.microseconds / *four - 1) * 100;
        table.add({std::to_string(count), fixed(costs.updatesEachSecond, 0),
                   fixed(costs.microseconds, 0), fixed(costs.guiMicroseconds, 0),
                   fixed(costs.coreShare, 1), fixed(costs.residentKiB / KiBEachMiB, 1),
                   count == 1 ? "" : fixed((costs.residentKiB - one->residentKiB) / (count - 1), 0),
                   std::to_string(costs.threads), fixed(percentile(costs.latencies, 0.5), 1),
                   fixed(percentile(costs.latencies, 0.99), 1)});
    }
    std::puts("### Tiles with screens of 240 x 125 in one window, ten updates a second each");
    table.print();
    std::printf("From 4 to 256 tiles the cost of an update changes by %+.0f %%.\n\n", growth);
}

using Owned = std::vector<std::unique_ptr<Process>>;
using Programs = std::vector<const Process*>;

Programs all(const Owned& owned) {
    Programs programs;
    for (const auto& program : owned)
        programs.push_back(program.get());
    return programs;
}

/// The processor time of one update in one of these programs, and the memory of one.
std::vector<std::string> costsOf(const char* name, const Programs& programs) {
    std::vector<double> microseconds;
    double memory = 0;
    double resident = 0;
    const auto used = [&programs] {
        double seconds = 0;
        for (const Process* program : programs)
            seconds += program->processorSeconds();
        return seconds;
    };
    for (int run = 0; run < runs; ++run) {
        const double start = now();
        const double before = used();
        pauseFor(runSeconds);
        const double updates = (now() - start) * screenfeed::rate * rivals;
        microseconds.push_back((used() - before) / updates * micro);
    }
    for (const Process* program : programs) {
        memory += program->privateKiB() / rivals;
        resident += program->residentKiB() / rivals;
    }
    return {name, fixed(median(microseconds), 0), fixed(memory / KiBEachMiB, 2),
            fixed(resident / KiBEachMiB, 2)};
}

std::string placeOf(int index) {
    return '+' + std::to_string(index % 4 * 300) + '+' + std::to_string(index / 4 * 200);
}

std::vector<std::string> window(const Display& display, const Home& home) {
    TileWindow tiles(display, home, rivals);
    return costsOf("one window with 16 tiles", {&tiles.process()});
}

std::vector<std::string> terminals(const Display& display, const Home& home) {
    Owned programs;
    for (int i = 0; i < rivals; ++i)
        programs.push_back(std::make_unique<Process>(
            std::vector<std::string>{"xterm", "-geometry", "40x8" + placeOf(i), "-fn", "fixed",
                                     "-e", GX_TERMINAL, std::to_string(i + 1)},
            home.environment(display)));
    pauseFor(settleSeconds);
    return costsOf("16 xterm of 40 x 8", all(programs));
}

std::vector<std::string> viewers(const Display& display, const Home& home) {
    const std::string socket = home.path() + "/vnc";
    Process server({"Xtigervnc", "-displayfd", "1", "-geometry", "240x104", "-depth", "24",
                    "-rfbunixpath", socket, "-SecurityTypes", "None", "-AlwaysShared"});
    // What they show: a terminal that fills the server's screen.
    std::vector<std::string> there = home.environment(display);
    there.front() = "DISPLAY=:" + server.readLine();
    const Process terminal(
        {"xterm", "-b", "0", "-geometry", "40x8+0+0", "-fn", "fixed", "-e", GX_TERMINAL, "1"},
        there);
    Owned programs;
    for (int i = 0; i < rivals; ++i)
        programs.push_back(std::make_unique<Process>(
            std::vector<std::string>{"xtigervncviewer", "-Shared", "-ViewOnly", "-SecurityTypes",
                                     "None", "-geometry", "240x104" + placeOf(i), socket},
            home.environment(display)));
    pauseFor(settleSeconds);
    return costsOf("16 tigervnc-viewer of 240 x 104", all(programs));
}

using Rival = std::vector<std::string>(const Display&, const Home&);

void compareRivals(const Display& display, const Home& home) {
    Table table({"for 16 instruments", "CPU us/update", "private MiB/instrument",
                 "resident MiB/instrument"});
    for (Rival* const rival : {window, terminals, viewers}) {
        try {
            table.add(rival(display, home));
        } catch (const std::exception& error) {
            table.add({error.what(), "", "", ""});
        }
    }
    std::puts("### What an operator would otherwise open, on the same display");
    table.print();
}

} // namespace

int main() {
    try {
        const Display display(4000, 2800);
        const Home home;
        compareTiles(display, home);
        compareRivals(display, home);
    } catch (const std::exception& error) {
        std::printf("Nothing measured: %s\n", error.what());
        return 1;
    }
    return 0;
}
