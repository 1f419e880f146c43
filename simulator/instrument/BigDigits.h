#pragma once

#include "InstrumentScreen.h"

#include <string_view>

/// Figures three rows high, made of blocks, for the reading that must be seen from afar.
namespace bigdigits {

/// Draws figures, "-", "+", "." and spaces from a cell to the right and down; other characters
/// take no room. Returns the first column behind them.
int draw(InstrumentScreen& screen, int column, int row, std::string_view figures);

} // namespace bigdigits
