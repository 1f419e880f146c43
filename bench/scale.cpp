// What a tile costs in a window of 1 to 256 of them, with instruments that send ten updates a
// second each, and what an operator would otherwise open costs on the same display in the same run:
// a terminal window or a VNC viewer for each instrument. Display servers are not counted anywhere.

#include "Display.h"
#include "Home.h"
#include "Instruments.h"
#include "ScreenFeed.h"
#include "Table.h"

#include <algorithm>
#include <cstdio>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <time.h>

namespace {

constexpr int runs = 5;
constexpr double settleSeconds = 1.5;
constexpr double runSeconds = 2;
constexpr int keysEachRun = 40;
constexpr int rivals = 16;
constexpr double micro = 1e6;
constexpr double KiBEachMiB = 1024;

void pause(double seconds) {
    timespec time{};
    time.tv_sec = static_cast<time_t>(seconds);
    time.tv_nsec = static_cast<long>((seconds - static_cast<double>(time.tv_sec)) * 1e9);
    nanosleep(&time, nullptr);
}

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

/// The window with a number of tiles, and the instruments that they mirror.
class Window {
public:
    Window(const Display& display, const Home& home, int tiles)
        : m_display(display),
          m_process({GX_WINDOW, std::to_string(m_instruments.port()), std::to_string(tiles),
                     std::to_string(tiles < 4    ? tiles
                                    : tiles < 64 ? 4
                                                 : 16)},
                    home.environment(display)) {
        std::string word;
        std::uint32_t window = 0;
        int left = 0;
        int top = 0;
        int width = 0;
        int height = 0;
        std::istringstream(m_process.readLine()) >> word >> window >> left >> top >> width >>
            height;
        if (word != "window")
            throw std::runtime_error("no window with tiles");
        m_x = left + static_cast<int>(width * screenfeed::markX);
        m_y = top + static_cast<int>(height * screenfeed::markY);
        m_display.focus(window);
        pause(settleSeconds);
    }

    Costs measure() {
        Costs costs;
        std::vector<std::vector<double>> samples(4);
        for (int run = 0; run < runs; ++run) {
            const double start = now();
            const long updates = m_instruments.updates();
            const double all = m_process.processorSeconds();
            const double gui = m_process.firstThreadSeconds();
            pause(runSeconds);
            const double span = now() - start;
            const double used = m_process.processorSeconds() - all;
            const double count = static_cast<double>(m_instruments.updates() - updates);
            samples[0].push_back(count / span);
            samples[1].push_back(used / count * micro);
            samples[2].push_back((m_process.firstThreadSeconds() - gui) / count * micro);
            samples[3].push_back(used / span * 100);
        }
        costs.updatesEachSecond = median(samples[0]);
        costs.microseconds = median(samples[1]);
        costs.guiMicroseconds = median(samples[2]);
        costs.coreShare = median(samples[3]);
        costs.residentKiB = m_process.residentKiB();
        costs.threads = m_process.threads();
        for (int key = 0; key < runs * keysEachRun; ++key)
            costs.latencies.push_back(keyToScreen(key) * 1e3);
        return costs;
    }

private:
    double keyToScreen(int key) {
        // Never in step with the updates.
        pause(0.005 + 0.0007 * (key % 17));
        const std::uint32_t before = m_display.pixel(m_x, m_y);
        const double pressed = m_display.pressKey();
        return m_display.waitForChange(m_x, m_y, before) - pressed;
    }

    const Display& m_display;
    Instruments m_instruments;
    Process m_process;
    int m_x = 0;
    int m_y = 0;
};

void compareTiles(const Display& display, const Home& home) {
    Table table({"tiles", "updates/s", "CPU us/update", "of it GUI thread", "% of one core",
                 "resident MiB", "KiB per added tile", "threads", "key to screen p50 ms",
                 "p99 ms"});
    std::optional<Costs> one;
    std::optional<double> four;
    double growth = 0;
    for (const int count : {1, 4, 16, 64, 256}) {
        const Costs costs = Window(display, home, count).measure();
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
    std::puts("### Tiles of 240 x 120 in one window, ten updates a second each");
    table.print();
    std::printf("From 4 to 256 tiles the cost of an update changes by %+.0f %%.\n\n", growth);
}

using Programs = std::vector<std::unique_ptr<Process>>;

/// The processor time of one update in one of these programs, and the memory of one.
std::vector<std::string> costsOf(const char* name, const Programs& programs) {
    std::vector<double> microseconds;
    double memory = 0;
    double resident = 0;
    const auto used = [&programs] {
        double seconds = 0;
        for (const auto& program : programs)
            seconds += program->processorSeconds();
        return seconds;
    };
    for (int run = 0; run < runs; ++run) {
        const double start = now();
        const double before = used();
        pause(runSeconds);
        const double updates = (now() - start) * screenfeed::rate * rivals;
        microseconds.push_back((used() - before) / updates * micro);
    }
    for (const auto& program : programs) {
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
    Instruments instruments;
    Programs programs;
    programs.push_back(std::make_unique<Process>(
        std::vector<std::string>{GX_WINDOW, std::to_string(instruments.port()),
                                 std::to_string(rivals), "4"},
        home.environment(display)));
    programs.back()->readLine();
    pause(settleSeconds);
    return costsOf("one window with 16 tiles", programs);
}

std::vector<std::string> terminals(const Display& display, const Home& home) {
    Programs programs;
    for (int i = 0; i < rivals; ++i)
        programs.push_back(std::make_unique<Process>(
            std::vector<std::string>{"xterm", "-geometry", "40x8" + placeOf(i), "-fn", "fixed",
                                     "-e", GX_TERMINAL, std::to_string(i + 1)},
            home.environment(display)));
    pause(settleSeconds);
    return costsOf("16 xterm of 40 x 8", programs);
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
    Programs programs;
    for (int i = 0; i < rivals; ++i)
        programs.push_back(std::make_unique<Process>(
            std::vector<std::string>{"xtigervncviewer", "-Shared", "-ViewOnly", "-SecurityTypes",
                                     "None", "-geometry", "240x104" + placeOf(i), socket},
            home.environment(display)));
    pause(settleSeconds);
    return costsOf("16 tigervnc-viewer of 240 x 104", programs);
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
