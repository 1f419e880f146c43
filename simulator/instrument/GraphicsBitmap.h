#pragma once

#include <string>
#include <string_view>

/// The graphics screen: 240 x 64 pixels of one bit, packed as it goes over the wire (rows from the
/// top, 30 bytes a row, the leftmost pixel in the highest bit, set = lit).
///
/// A value. Coordinates are pixels from the top left corner; what lies outside is cut off.
class GraphicsBitmap {
public:
    static constexpr int width = 240;
    static constexpr int height = 64;

    enum class Ink { Clear, Set };

    void plot(int x, int y, Ink ink = Ink::Set);
    bool isSet(int x, int y) const;

    /// Fills the columns left to right and the rows top to bottom, all of them included.
    void fill(int left, int top, int right, int bottom, Ink ink = Ink::Set);

    /// A vertical line between two rows in any order, both included.
    void vertical(int x, int from, int to);

    /// Writes UTF-8 text with its first glyph's top left pixel at (x, y), six pixels a character.
    void text(int x, int y, std::string_view utf8, Ink ink = Ink::Set);

    /// The packed bitmap, 1920 bytes.
    const std::string& bytes() const { return m_bytes; }

    bool operator==(const GraphicsBitmap&) const = default;

private:
    std::string m_bytes = std::string(std::size_t{width} / 8 * height, '\0');
};
