// Shows in a terminal of 40 x 8 characters what the simulated instruments show in a tile, with as
// many updates a second.
// usage: gx_bench_terminal INSTRUMENT

#include "ScreenFeed.h"

#include <cstdlib>
#include <time.h>
#include <unistd.h>

int main(int argc, char** argv) {
    const int instrument = argc > 1 ? std::atoi(argv[1]) : 1;
    constexpr long period = 1'000'000'000 / screenfeed::rate;
    for (int update = 0;; ++update) {
        const std::string cells = screenfeed::text(instrument, update);
        // From the upper left corner, without the wrap that would scroll.
        std::string bytes = "\x1b[H";
        for (std::size_t row = 0; row < screenfeed::rows; ++row) {
            if (row > 0)
                bytes += "\r\n";
            bytes += cells.substr(row * screenfeed::columns, screenfeed::columns);
        }
        if (write(STDOUT_FILENO, bytes.data(), bytes.size()) < 0)
            return 1;
        const timespec pause{0, period};
        nanosleep(&pause, nullptr);
    }
}
