#include "GraphImage7100.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr int bytesFor(int columns) {
    return columns / 8 + (columns % 8 != 0 ? 1 : 0);
}

bool isLit(const uchar* line, int column) {
    return (line[column / 8] & (0x80 >> (column % 8))) != 0;
}

} // namespace

GraphImage7100::GraphImage7100(int width, int height, const char* bits)
    : QImage(width, height, QImage::Format_Mono) {
    if (isNull())
        return;
    const auto lineBytes = static_cast<std::size_t>(bytesFor(width));
    for (int row = 0; row < height; ++row) {
        // Bits beyond the last column are not pixels: nothing here ever reads them.
        std::memcpy(scanLine(row), bits + static_cast<std::size_t>(row) * lineBytes, lineBytes);
    }
}

qsizetype GraphImage7100::packedSize(int width, int height) {
    return width > 0 && height > 0 ? qsizetype{bytesFor(width)} * height : 0;
}

QImage GraphImage7100::toColor(QColor on, QColor off) const {
    QImage colored(size(), QImage::Format_RGB32);
    const QRgb lit = on.rgb();
    const QRgb unlit = off.rgb();
    for (int row = 0; row < height(); ++row) {
        const uchar* from = constScanLine(row);
        auto* to = reinterpret_cast<QRgb*>(colored.scanLine(row));
        for (int column = 0; column < width(); ++column)
            to[column] = isLit(from, column) ? lit : unlit;
    }
    return colored;
}

QRect GraphImage7100::checkLimits(const QRect& area) const {
    if (isNull())
        return {};
    const int left = std::clamp(area.left(), 0, width() - 1);
    const int top = std::clamp(area.top(), 0, height() - 1);
    const int right = std::clamp(area.right(), left, width() - 1);
    const int bottom = std::clamp(area.bottom(), top, height() - 1);
    return {QPoint(left, top), QPoint(right, bottom)};
}

void GraphImage7100::toBits(QVector<char>& out, const QRect& area) const {
    const QRect part = checkLimits(area);
    out.fill(0, mySize(area));
    char* to = out.data();
    for (int row = part.top(); row <= part.bottom(); ++row) {
        const uchar* from = constScanLine(row);
        for (int column = 0; column < part.width(); ++column) {
            if (isLit(from, part.left() + column))
                to[column / 8] = static_cast<char>(to[column / 8] | (0x80 >> (column % 8)));
        }
        to += bytesFor(part.width());
    }
}

void GraphImage7100::toBits(QVector<char>& out) const {
    toBits(out, rect());
}

int GraphImage7100::mySize(const QRect& area) const {
    const QRect part = checkLimits(area);
    return static_cast<int>(packedSize(part.width(), part.height()));
}
