#pragma once

#include <string>

/// What the simulated instruments of the benchmarks show: a page with readings that change.
namespace screenfeed {

inline constexpr int columns = 40;
inline constexpr int rows = 8;
/// Updates a second of each instrument.
inline constexpr int rate = 10;

/// The characters of update number `update` of an instrument; thirty of them differ from one update
/// to the next.
std::string text(int instrument, int update);

/// That update as it travels: a frame with text, attributes and cursor. With `mark` the cell in the
/// middle of the last row is a full block.
std::string frame(int instrument, int update, bool mark);

/// A frame that holds one packet of this type.
std::string frameOf(const std::string& type, const std::string& body);

/// One bundle item.
std::string item(char code, const std::string& data);

/// The place of the cell that `frame` marks, as shares of the screen's width and height.
inline constexpr double markX = 20.5 / columns;
inline constexpr double markY = 7.5 / rows;

} // namespace screenfeed
