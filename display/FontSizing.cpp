#include "FontSizing.h"

#include <QFontMetricsF>
#include <QHash>
#include <QMutex>
#include <QMutexLocker>
#include <QString>

#include <algorithm>

namespace {

constexpr int measuringPixelSize = 100;
/// Above what the largest image asks for, and within what every font engine takes.
constexpr qreal maxPixelSize = 4000;

/// The shapes that have been measured. A thread that measures loads the font for itself, which
/// takes time and memory; with as many threads as there are tiles, one of them does it for all.
class ShapesOfFamilies {
public:
    static ShapesOfFamilies& shared() {
        static ShapesOfFamilies shapes;
        return shapes;
    }

    qreal of(const QFont& sized) {
        const QMutexLocker lock(&m_mutex);
        const QString key = sized.key();
        if (const auto known = m_shapes.constFind(key); known != m_shapes.constEnd())
            return *known;
        const QRectF box = QFontMetricsF(sized).boundingRect(QStringLiteral("W"));
        const qreal shape = box.width() > 0 ? box.height() / box.width() : 1;
        if (m_shapes.size() >= most)
            m_shapes.clear();
        m_shapes.insert(key, shape);
        return shape;
    }

private:
    /// Far more than an operator chooses from; only a bound.
    static constexpr qsizetype most = 256;

    QMutex m_mutex;
    QHash<QString, qreal> m_shapes;
};

} // namespace

FontSizing FontSizing::fitted(const QFont& font, const QSize& size, const QSizeF& cell) const {
    if (size == screenSize)
        return *this;
    return {size, letterPixelSize(letterShape(font), cell)};
}

qreal letterShape(const QFont& font) {
    const QFont sized = sizedFont(font, measuringPixelSize);
    return ShapesOfFamilies::shared().of(sized);
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
