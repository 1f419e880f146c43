#include "GridGeometry.h"

#include <algorithm>

namespace grid {

Cell cellAt(int index, int maxColumns) {
    const int columns = std::max(1, maxColumns);
    return {index / columns, index % columns};
}

QRect grown(const QRect& window, int tilesBefore, int maxColumns) {
    QRect geometry = window;
    const Cell cell = cellAt(tilesBefore, maxColumns);
    if (tilesBefore == 1)
        geometry.setHeight(2 * window.height());
    else if (cell.row > 0 && cell.column == 0)
        geometry.setWidth(window.width() + window.width() / cell.row);
    return geometry;
}

QRect rebuilt(const QPoint& topLeft, const QSize& cell, int horizontalSpacing, int verticalSpacing,
              int tiles, int maxColumns) {
    // Spelled out because the remainder of -1 depends on the number of columns.
    const Cell last = tiles > 0 ? cellAt(tiles - 1, maxColumns) : Cell{0, -1};
    return {topLeft, QSize((cell.width() + verticalSpacing) * (last.row + 1),
                           (cell.height() + horizontalSpacing) * (last.column + 1))};
}

} // namespace grid
