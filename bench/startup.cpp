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
    std::vector<std::string> command;
    /// How many tiles the last run left behind.
    int tiles;
};

std::vector<Subject> subjects() {
    return {{"empty window", {GX_MINIMAL}, 0},
            {"window with a line of text", {GX_MINIMAL, "GX-7100"}, 0},
            {"window with text and bars", {GX_MINIMAL, "GX-7100", "bars"}, 0},
            {"program, without tiles", {GX_PROGRAM}, 0},
            {"program, 1 tile", {GX_PROGRAM}, 1},
            {"program, 16 tiles", {GX_PROGRAM}, 16}};
}

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
    display.forgetWindows();
    const double begin = now();
    const Process process(subject.command, home.environment(display));
    display.waitForWindow();
    const double end = display.waitForChange(x, y, empty);
    return {(end - begin) * milli, process.processorSeconds() * milli};
}

} // namespace

int main() {
    try {
        const Display display(1280, 1024);
        const std::vector<Subject> all = subjects();
        std::vector<std::vector<double>> times(all.size());
        std::vector<std::vector<double>> costs(all.size());
        for (int run = 0; run < runs; ++run) {
            for (std::size_t i = 0; i < all.size(); ++i) {
                const Start sample = start(all[i], display);
                times[i].push_back(sample.milliseconds);
                costs[i].push_back(sample.processorMilliseconds);
            }
        }
        Table table({"", "start to painted window ms", "to empty window", "to window with text",
                     "to window with bars", "CPU ms until then"});
        for (std::size_t i = 0; i < all.size(); ++i)
            table.add({all[i].name, fixed(median(times[i]), 1),
                       fixed(median(times[i]) / median(times[0]), 2),
                       fixed(median(times[i]) / median(times[1]), 2),
                       fixed(median(times[i]) / median(times[2]), 2), fixed(median(costs[i]), 1)});
        std::puts("### From the start of a process to its first painted window");
        table.print();
    } catch (const std::exception& error) {
        std::printf("Nothing measured: %s\n", error.what());
        return 1;
    }
    return 0;
}
