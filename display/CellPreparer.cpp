#include "CellPreparer.h"

#include "CellPainter.h"
#include "FontSizing.h"

#include <algorithm>

namespace {

/// Most letters leave this part of their cell's width free on either side.
constexpr int lettersMargin = 6;

/// The colour that blending `color` over it, however faintly, changes most.
QRgb farFrom(const QColor& color) {
    const auto opposite = [](int channel) { return channel < 128 ? 255 : 0; };
    return qRgb(opposite(color.red()), opposite(color.green()), opposite(color.blue()));
}

} // namespace

CellPreparer::CellPreparer(const CellLook& look, const CellGrid& grid, QRgb* pixels)
    : m_grid(grid), m_colors(look.colors), m_pixels(pixels),
      m_image(reinterpret_cast<uchar*>(pixels), look.imageSize.width(), look.imageSize.height(),
              look.imageSize.width() * qsizetype{sizeof(QRgb)}, QImage::Format_RGB32),
      m_painter(&m_image) {
    m_painter.setFont(sizedFont(look.font, look.letterSize));
    // As the painter makes them, not as the colour says: colours can be finer than pixels.
    for (std::size_t i = 0; i < m_backgrounds.size(); ++i) {
        m_painter.fillRect(0, 0, 1, 1, m_colors.background[i]);
        m_backgrounds[i] = m_pixels[0];
    }
}

PreparedCell CellPreparer::alone(int column, int row, CellCode cell) {
    const QRect own = m_grid.pixels(column, row);
    const QRect near = own.adjusted(-own.width() / 2 - 1, -own.width() / 2 - 1, own.width(), 0);
    struct Side {
        int column;
        int row;
        PreparedCell::Reach reach;
    };
    const Side sides[] = {{column - 1, row, PreparedCell::Left},
                          {column - 1, row - 1, PreparedCell::UpLeft},
                          {column, row - 1, PreparedCell::Up},
                          {column + 1, row - 1, PreparedCell::UpRight}};
    const auto pixels = [&](const Side& side) {
        const bool exists = side.column >= 0 && side.column < m_grid.columns() && side.row >= 0;
        return exists ? m_grid.pixels(side.column, side.row) & near : QRect();
    };
    const QRgb untouched = farFrom(m_colors.foreground[cell.color]);
    for (const Side& side : sides)
        fill(pixels(side), untouched);
    paint(column, row, cell);
    PreparedCell prepared = cutOut(column, row, cell);
    for (const Side& side : sides) {
        if (!isFilled(pixels(side), untouched))
            prepared.reach |= side.reach;
    }
    return prepared;
}

PreparedCell CellPreparer::among(int column, int row, CellCode cell, const Neighbours& neighbours) {
    // In the order in which a whole screen is painted.
    paint(column, row, cell);
    if (neighbours.right)
        paint(column + 1, row, *neighbours.right);
    if (neighbours.downLeft)
        paint(column - 1, row + 1, *neighbours.downLeft);
    if (neighbours.down)
        paint(column, row + 1, *neighbours.down);
    if (neighbours.downRight)
        paint(column + 1, row + 1, *neighbours.downRight);
    return cutOut(column, row, cell);
}

void CellPreparer::paint(int column, int row, CellCode cell) {
    paintCell(m_painter, cell.in(m_colors), m_grid.area(column, row), m_grid.overlap());
}

void CellPreparer::fill(const QRect& area, QRgb pixel) {
    for (int y = area.top(); y <= area.bottom(); ++y)
        std::fill_n(line(y) + area.left(), area.width(), pixel);
}

bool CellPreparer::isFilled(const QRect& area, QRgb pixel) const {
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const QRgb* const from = line(y) + area.left();
        if (!std::all_of(from, from + area.width(), [pixel](QRgb p) { return p == pixel; }))
            return false;
    }
    return true;
}

PreparedCell CellPreparer::cutOut(int column, int row, CellCode cell) const {
    const QRect own = m_grid.pixels(column, row);
    PreparedCell prepared;
    const QRgb background = m_backgrounds[cell.color];
    prepared.background = background;
    QRect& kept = prepared.kept;
    for (int y = own.top(); y <= own.bottom(); ++y) {
        const QRgb* const from = line(y) + own.left();
        const QRgb* const to = from + own.width();
        const auto isInk = [background](QRgb p) { return p != background; };
        const auto first = std::find_if(from, to, isInk);
        if (first == to)
            continue;
        const auto last =
            std::find_if(std::make_reverse_iterator(to), std::make_reverse_iterator(from), isInk);
        kept |= QRect(QPoint(static_cast<int>(first - from), y - own.top()),
                      QPoint(static_cast<int>(last.base() - from) - 1, y - own.top()));
    }
    if (!kept.isEmpty()) {
        const int margin = own.width() / lettersMargin;
        kept.setLeft(std::min(kept.left(), margin));
        kept.setRight(std::max(kept.right(), own.width() - 1 - margin));
    }
    for (int y = kept.top(); y <= kept.bottom(); ++y) {
        const QRgb* const from = line(own.top() + y) + own.left() + kept.left();
        prepared.pixels.insert(prepared.pixels.end(), from, from + kept.width());
    }
    return prepared;
}
