#include "TextScreen.h"

#include "CellGrid.h"
#include "CellPainter.h"

#include <QPainter>

#include <algorithm>

void TextScreen::fitFont(const QSize& size) {
    sizing = sizing.fitted(font, size, CellGrid(size, columns, rows).cellSize());
}

CellLook TextScreen::look(const QSize& size) const {
    return {font, sizing.pixelSize, size, columns, rows, colors};
}

std::vector<CellCode> TextScreen::cells() const {
    const auto count = static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows);
    const auto within = [count](const QVector<char>& bytes) {
        return std::min(count, static_cast<std::size_t>(bytes.size()));
    };
    std::vector<CellCode> cells(count);
    const char* const codes = text.constData();
    const char* const attributes = attr.constData();
    const std::size_t both = std::min(within(text), within(attr));
    for (std::size_t i = 0; i < both; ++i)
        cells[i] = CellCode::of(codes[i], attributes[i]);
    for (std::size_t i = both; i < within(text); ++i)
        cells[i] = CellCode::of(codes[i], 0);
    for (std::size_t i = both; i < within(attr); ++i)
        cells[i] = CellCode::of(0, attributes[i]);
    return cells;
}

void TextScreen::paintText(QPainter& painter, const QSize& size,
                           const std::atomic<bool>& restart) const {
    const CellGrid grid(size, columns, rows);
    const std::vector<CellCode> codes = cells();
    painter.setFont(sizedFont(font, sizing.pixelSize));
    auto cell = codes.begin();
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column, ++cell) {
            if (restart)
                return;
            paintCell(painter, cell->in(colors), grid.area(column, row), grid.overlap());
        }
    }
}
