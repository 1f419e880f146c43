#pragma once

#include <QString>

#include <string_view>

/// What a screen of character codes, row by row, says to somebody who cannot see it: its lines
/// without boxes, blocks and what is blank, parted by line feeds. Pure; any thread.
QString screenText(std::string_view codes, int columns);
