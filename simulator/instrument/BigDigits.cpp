#include "BigDigits.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace bigdigits {
namespace {

/// The three screen rows of a figure.
struct Figure {
    char character;
    std::array<std::string_view, 3> rows;
    int width;
};

constexpr std::array figures{
    Figure{'0', {"█▀█", "█ █", "▀▀▀"}, 3}, Figure{'1', {"▀█ ", " █ ", "▀▀▀"}, 3},
    Figure{'2', {"▀▀█", "█▀▀", "▀▀▀"}, 3}, Figure{'3', {"▀▀█", " ▀█", "▀▀▀"}, 3},
    Figure{'4', {"█ █", "▀▀█", "  ▀"}, 3}, Figure{'5', {"█▀▀", "▀▀█", "▀▀▀"}, 3},
    Figure{'6', {"█▀▀", "█▀█", "▀▀▀"}, 3}, Figure{'7', {"▀▀█", "  █", "  ▀"}, 3},
    Figure{'8', {"█▀█", "█▀█", "▀▀▀"}, 3}, Figure{'9', {"█▀█", "▀▀█", "▀▀▀"}, 3},
    Figure{'-', {"   ", "▀▀▀", "   "}, 3}, Figure{'+', {" ▄ ", "▀█▀", "   "}, 3},
    Figure{'.', {" ", " ", "▀"}, 1},       Figure{' ', {"   ", "   ", "   "}, 3},
};

} // namespace

int draw(InstrumentScreen& screen, int column, int row, std::string_view text) {
    for (const char character : text) {
        const auto* figure = std::ranges::find(figures, character, &Figure::character);
        if (figure == figures.end())
            continue;
        int line = row;
        for (const std::string_view cells : figure->rows)
            screen.put(column, line++, cells);
        column += figure->width + 1;
    }
    return column;
}

} // namespace bigdigits
