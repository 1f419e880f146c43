#pragma once

#include "ColorTables.h"

#include <QFont>
#include <QSize>

/// All that what a cell looks like depends on, apart from its place and its neighbours. A value;
/// any thread.
struct CellLook {
    QFont font;
    int letterSize = 0;
    QSize imageSize;
    int columns = 0;
    int rows = 0;
    ColorTables colors;

    friend bool operator==(const CellLook&, const CellLook&) = default;
};
