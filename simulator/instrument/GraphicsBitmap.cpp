#include "GraphicsBitmap.h"

#include "CharacterSet.h"
#include "PixelFont.h"

#include <algorithm>

namespace {

bool isInside(int x, int y) {
    return x >= 0 && x < GraphicsBitmap::width && y >= 0 && y < GraphicsBitmap::height;
}

std::size_t indexOf(int x, int y) {
    constexpr std::size_t bytesPerRow = GraphicsBitmap::width / 8;
    return static_cast<std::size_t>(y) * bytesPerRow + static_cast<std::size_t>(x) / 8;
}

unsigned char maskOf(int x) {
    return static_cast<unsigned char>(0x80U >> (static_cast<unsigned int>(x) % 8U));
}

} // namespace

void GraphicsBitmap::plot(int x, int y, Ink ink) {
    if (!isInside(x, y))
        return;
    char& byte = m_bytes[indexOf(x, y)];
    const unsigned char mask = maskOf(x);
    byte = static_cast<char>(ink == Ink::Set ? static_cast<unsigned char>(byte) | mask
                                             : static_cast<unsigned char>(byte) & ~mask);
}

bool GraphicsBitmap::isSet(int x, int y) const {
    if (!isInside(x, y))
        return false;
    const char byte = m_bytes[indexOf(x, y)];
    return (static_cast<unsigned char>(byte) & maskOf(x)) != 0;
}

void GraphicsBitmap::fill(int left, int top, int right, int bottom, Ink ink) {
    for (int y = top; y <= bottom; ++y) {
        for (int x = left; x <= right; ++x)
            plot(x, y, ink);
    }
}

void GraphicsBitmap::vertical(int x, int from, int to) {
    const auto [top, bottom] = std::minmax(from, to);
    fill(x, top, x, bottom);
}

void GraphicsBitmap::text(int x, int y, std::string_view utf8, Ink ink) {
    for (const char code : charset::fromUtf8(utf8)) {
        const pixelfont::Glyph& glyph = pixelfont::glyphOf(code);
        for (int row = 0; row < pixelfont::glyphHeight; ++row) {
            for (int column = 0; column < pixelfont::glyphWidth; ++column) {
                const unsigned int mask = 0x10U >> static_cast<unsigned int>(column);
                if ((glyph.at(static_cast<std::size_t>(row)) & mask) != 0)
                    plot(x + column, y + row, ink);
            }
        }
        x += pixelfont::advance;
    }
}
