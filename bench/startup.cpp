// How long the program takes from its start to its first painted window, beside the least program
// with a window that Qt Widgets can be: one is started after the other, again and again.

#include "Display.h"
#include "Home.h"
#include "Table.h"

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace {

/// Starts of each; they are short, and what else the computer does shows.
constexpr int runs = 15;
constexpr double milli = 1e3;

struct Subject {
    const char* name;
    const char* program;
    /// How many tiles the last run left behind.
    int tiles;
};

constexpr Subject subjects[] = {
    {"least window", GX_MINIMAL, 0},
    {"program, without tiles", GX_PROGRAM, 0},
    {"program, 1 tile", GX_PROGRAM, 1},
    {"program, 16 tiles", GX_PROGRAM, 16},
};

struct Start {
    double milliseconds = 0;
    double processorMilliseconds = 0;
};

void leaveTiles(const Home& home, int tiles) {
    std::filesystem::create_directories(home.path() + "/VESTRA");
    std::ofstream(home.path() + "/VESTRA/group7100.conf") << "[group]\ncount=" << tiles << '\n';
}

Start start(const Subject& subject, const Display& display) {
    const Home home;
    leaveTiles(home, subject.tiles);
    // Without a window manager a window stands in the upper left corner. Below its bars there is
    // something that is not the empty screen as soon as it is painted.
    constexpr int x = 5;
    constexpr int y = 100;
    const std::uint32_t empty = display.pixel(x, y);
    const double begin = now();
    const Process process({subject.program}, home.environment(display));
    const double end = display.waitForChange(x, y, empty);
    return {(end - begin) * milli, process.processorSeconds() * milli};
}

} // namespace

int main() {
    try {
        const Display display(1280, 1024);
        std::vector<std::vector<double>> times(std::size(subjects));
        std::vector<std::vector<double>> costs(std::size(subjects));
        for (int run = 0; run < runs; ++run) {
            for (std::size_t i = 0; i < std::size(subjects); ++i) {
                const Start sample = start(subjects[i], display);
                times[i].push_back(sample.milliseconds);
                costs[i].push_back(sample.processorMilliseconds);
            }
        }
        Table table({"", "start to painted window ms", "ratio", "CPU ms until then", "ratio"});
        for (std::size_t i = 0; i < std::size(subjects); ++i)
            table.add({subjects[i].name, fixed(median(times[i]), 1),
                       fixed(median(times[i]) / median(times[0]), 2), fixed(median(costs[i]), 1),
                       fixed(median(costs[i]) / median(costs[0]), 2)});
        std::puts("### From the start of a process to its first painted window");
        table.print();
    } catch (const std::exception& error) {
        std::printf("Nothing measured: %s\n", error.what());
        return 1;
    }
    return 0;
}
