#include "LCDGeometry.h"

#include <algorithm>

namespace {

constexpr int inset = 2;
constexpr int underlineHeight = 2;
constexpr int firstSoftKey = 96;
constexpr int softKeyCount = 5;

} // namespace

QRectF cursorArea(const QSize& size, int columns, int rows, const LCDTextCursor& cursor) {
    const double cellWidth = (size.width() - 2.0 * inset) / columns;
    const double cellHeight = (size.height() - 2.0 * inset) / rows;
    if (cellWidth <= 0 || cellHeight <= 0)
        return {};
    const double left = (static_cast<double>(cursor.column) - 1) * cellWidth + inset;
    const double bottom = static_cast<double>(cursor.row) * cellHeight + inset;
    const QRectF screen(QPointF(0, 0), size);
    switch (cursor.mode) {
    case LCDTextCursor::Underline:
        return screen & QRectF(left, bottom - underlineHeight, cellWidth, underlineHeight);
    case LCDTextCursor::Block:
        return screen & QRectF(left, bottom - cellHeight, cellWidth, cellHeight);
    default:
        return {};
    }
}

int softKeyAt(const QSize& size, int x, int y) {
    if (y <= 0.75 * size.height())
        return -1;
    const int bandWidth = std::max(1, size.width() / softKeyCount);
    // Up to four columns beyond the fifth band belong to it when the width is no multiple of five.
    return firstSoftKey + std::clamp(x / bandWidth, 0, softKeyCount - 1);
}
