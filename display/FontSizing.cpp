#include "FontSizing.h"

#include <QFontMetricsF>

#include <algorithm>

namespace {

constexpr int measuringPixelSize = 100;
/// Above what the largest image asks for, and within what every font engine takes.
constexpr qreal maxPixelSize = 4000;

} // namespace

FontSizing FontSizing::fitted(const QFont& font, const QSize& size, const QSizeF& cell) const {
    if (size == screenSize)
        return *this;
    return {size, letterPixelSize(letterShape(font), cell)};
}

qreal letterShape(const QFont& font) {
    const QRectF box =
        QFontMetricsF(sizedFont(font, measuringPixelSize)).boundingRect(QStringLiteral("W"));
    return box.width() > 0 ? box.height() / box.width() : 1;
}

int letterPixelSize(qreal shape, const QSizeF& cell) {
    const qreal cellShape = cell.height() / cell.width();
    const qreal pixels = shape > cellShape ? 0.9 * cell.height() : 0.9 * shape * cell.width();
    return static_cast<int>(std::clamp<qreal>(pixels, 1, maxPixelSize));
}

QFont sizedFont(const QFont& font, int pixelSize) {
    QFont sized = font;
    // Changing the point size first makes the next line a change in every case, and it is the
    // change that gives the copy data of its own.
    sized.setPointSizeF(sized.pointSizeF() == 1 ? 2 : 1);
    sized.setPixelSize(pixelSize);
    return sized;
}
