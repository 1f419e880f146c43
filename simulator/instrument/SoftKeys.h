#pragma once

#include "GraphicsBitmap.h"
#include "InstrumentScreen.h"

#include <array>
#include <string_view>

/// The labels of the five soft keys: the bottom quarter of the display, in five equal bands, where
/// the operator clicks for F1 to F5.
namespace softkeys {

inline constexpr int count = 5;

/// Labels from F1 to F5, at most six characters of UTF-8; an empty one leaves its band empty.
using Labels = std::array<std::string_view, count>;

/// Draws key caps on rows 7 and 8, each with its label above the name of its key.
void draw(InstrumentScreen& screen, const Labels& labels);

/// The same on the graphics screen.
void draw(GraphicsBitmap& bitmap, const Labels& labels);

} // namespace softkeys
