#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

/// Where the tiles stand in the group window's grid and how the window follows their number. Pure;
/// any thread. `maxColumns` below 1 counts as 1.
namespace grid {

struct Cell {
    int row = 0;
    int column = 0;

    bool operator==(const Cell&) const = default;
};

/// The place of the tile with this index: rows are filled from the left.
Cell cellAt(int index, int maxColumns);

/// The window's geometry when a tile joins `tilesBefore` others: the second tile doubles the
/// height; a tile that starts a new row adds the width's `row`-th part to the width.
QRect grown(const QRect& window, int tilesBefore, int maxColumns);

/// The window's geometry for `tiles` re-laid tiles, from the size of the first cell. The number of
/// rows sets the width (with the vertical spacing), the tiles in the last row set the height (with
/// the horizontal spacing). No tiles give one cell's width and no height.
QRect rebuilt(const QPoint& topLeft, const QSize& cell, int horizontalSpacing, int verticalSpacing,
              int tiles, int maxColumns);

} // namespace grid
