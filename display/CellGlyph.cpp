#include "CellGlyph.h"

#include <array>

namespace {

using Kind = CellGlyph::Kind;

constexpr unsigned char left = CellGlyph::Left;
constexpr unsigned char right = CellGlyph::Right;
constexpr unsigned char up = CellGlyph::Up;
constexpr unsigned char down = CellGlyph::Down;

struct SymbolCode {
    unsigned char code;
    char16_t symbol;
};

constexpr SymbolCode symbolCodes[] = {
    {4, u'\u25C6'},   // black diamond
    {9, u'\u25FE'},   // black medium small square
    {16, u'\u25B6'},  // black right-pointing triangle
    {17, u'\u25C2'},  // black left-pointing small triangle
    {24, u'\u2191'},  // upwards arrow
    {25, u'\u2193'},  // downwards arrow
    {26, u'\u2192'},  // rightwards arrow
    {27, u'\u2190'},  // leftwards arrow
    {30, u'\u25B2'},  // black up-pointing triangle
    {31, u'\u25BC'},  // black down-pointing triangle
    {127, u'\u0394'}, // capital delta
    {227, u'\u03C0'}, // small pi
    {230, u'\u00B5'}, // micro sign
    {248, u'\u00B0'}, // degree sign
};

struct DrawnCode {
    unsigned char code;
    Kind kind;
    unsigned char sides;
};

constexpr DrawnCode drawnCodes[] = {
    {0, Kind::Blank, 0},
    {32, Kind::Blank, 0},

    {179, Kind::SingleBox, up | down},
    {191, Kind::SingleBox, left | down},
    {192, Kind::SingleBox, up | right},
    {193, Kind::SingleBox, left | up | right},
    {194, Kind::SingleBox, left | down | right},
    {195, Kind::SingleBox, up | right | down},
    {196, Kind::SingleBox, left | right},
    {197, Kind::SingleBox, left | right | up | down},
    {217, Kind::SingleBox, left | up},
    {218, Kind::SingleBox, right | down},

    {185, Kind::DoubleBox, up | left | down},
    {186, Kind::DoubleBox, up | down},
    {187, Kind::DoubleBox, left | down},
    {188, Kind::DoubleBox, left | up},
    {200, Kind::DoubleBox, up | right},
    {201, Kind::DoubleBox, right | down},
    {202, Kind::DoubleBox, left | up | right},
    {203, Kind::DoubleBox, left | down | right},
    {204, Kind::DoubleBox, up | right | down},
    {205, Kind::DoubleBox, left | right},
    {206, Kind::DoubleBox, left | right | up | down},

    {219, Kind::Block, left | right | up | down},
    {220, Kind::Block, left | right | down},
    {221, Kind::Block, left | up | down},
    {222, Kind::Block, right | up | down},
    {223, Kind::Block, left | right | up},
};

std::array<CellGlyph, 256> makeGlyphs() {
    std::array<CellGlyph, 256> glyphs;
    for (std::size_t code = 0; code < glyphs.size(); ++code)
        glyphs[code] = {Kind::Character, 0, QLatin1Char(static_cast<char>(code))};
    for (const auto& [code, symbol] : symbolCodes)
        glyphs[code] = {Kind::Character, 0, symbol};
    for (const auto& [code, kind, sides] : drawnCodes)
        glyphs[code] = {kind, sides, {}};
    return glyphs;
}

} // namespace

CellGlyph cellGlyph(unsigned char code) {
    static const std::array<CellGlyph, 256> glyphs = makeGlyphs();
    return glyphs[code];
}
