#pragma once

#include <array>
#include <cstdint>

/// The font of the graphics screen: capitals, figures and signs of 5 x 7 pixels.
namespace pixelfont {

inline constexpr int glyphWidth = 5;
inline constexpr int glyphHeight = 7;
/// Pixels from one character to the next, so that 40 fit on a row as on the text screen.
inline constexpr int advance = 6;

/// Seven rows from the top; the leftmost pixel is bit 4.
using Glyph = std::array<std::uint8_t, glyphHeight>;

/// The picture of a code of the instrument's character set; small letters look like capitals, and
/// what the font lacks looks like "?".
const Glyph& glyphOf(char code);

} // namespace pixelfont
