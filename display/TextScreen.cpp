#include "TextScreen.h"

#include "CellGlyph.h"
#include "CellPainter.h"

#include <QPainter>

namespace {

constexpr qreal margin = 0;

unsigned char cellOf(const QVector<char>& cells, qsizetype index) {
    return static_cast<unsigned char>(index < cells.size() ? cells.at(index) : 0);
}

std::size_t colorIndex(unsigned char attribute) {
    return attribute < ColorTables::attributeCount ? attribute : 0;
}

} // namespace

QSizeF TextScreen::cellSize(const QSize& size) const {
    return {(size.width() - 2 * margin) / columns, (size.height() - 2 * margin) / rows};
}

void TextScreen::fitFont(const QSize& size) {
    sizing = sizing.fitted(font, size, cellSize(size));
}

void TextScreen::paintText(QPainter& painter, const QSize& size,
                           const std::atomic<bool>& restart) const {
    const QSizeF cell = cellSize(size);
    const qreal overlap = cell.width() / 8;
    painter.setFont(sizedFont(font, sizing.pixelSize));
    qsizetype index = 0;
    // Positions are added up, so that the end of a cell is exactly the beginning of the next.
    qreal y = margin;
    for (int row = 0; row < rows; ++row, y += cell.height()) {
        qreal x = margin;
        for (int column = 0; column < columns; ++column, ++index, x += cell.width()) {
            if (restart)
                return;
            const std::size_t color = colorIndex(cellOf(attr, index));
            paintCell(painter,
                      {cellGlyph(cellOf(text, index)), colors.foreground[color],
                       colors.background[color]},
                      {{x, y}, cell}, overlap);
        }
    }
}
