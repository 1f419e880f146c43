#include "CellPainter.h"

#include <QPainter>

#include <array>

namespace {

/// One of the two directions that lines run in. `near` and `far` are the sides at a line's ends,
/// `low` and `high` the sides to its left and right, or above and below it.
struct Direction {
    CellGlyph::Side near;
    CellGlyph::Side far;
    CellGlyph::Side low;
    CellGlyph::Side high;
    bool vertical;

    // Not QRectF::center(): it would round differently in the two directions.
    static qreal centreX(const QRectF& area) { return area.left() + area.width() / 2; }
    static qreal centreY(const QRectF& area) { return area.top() + area.height() / 2; }

    qreal start(const QRectF& area) const { return vertical ? area.top() : area.left(); }
    qreal end(const QRectF& area) const { return vertical ? area.bottom() : area.right(); }
    qreal centre(const QRectF& area) const { return vertical ? centreY(area) : centreX(area); }
    qreal centreAcross(const QRectF& area) const {
        return vertical ? centreX(area) : centreY(area);
    }

    QLineF line(qreal across, qreal from, qreal to) const {
        return vertical ? QLineF(across, from, across, to) : QLineF(from, across, to, across);
    }
};

constexpr std::array directions = {
    Direction{CellGlyph::Up, CellGlyph::Down, CellGlyph::Left, CellGlyph::Right, true},
    Direction{CellGlyph::Left, CellGlyph::Right, CellGlyph::Up, CellGlyph::Down, false},
};

void paintSingleBox(QPainter& painter, const CellGlyph& glyph, const QRectF& area) {
    for (const Direction& direction : directions) {
        const bool near = glyph.reaches(direction.near);
        const bool far = glyph.reaches(direction.far);
        if (!near && !far)
            continue;
        const qreal centre = direction.centre(area);
        painter.drawLine(direction.line(direction.centreAcross(area),
                                        near ? direction.start(area) : centre,
                                        far ? direction.end(area) : centre));
    }
}

/// Of the pair of lines in one direction the one on the side of an arm is cut open between the
/// arm's own two lines; the other runs through, or ends at the corner that the piece makes.
void paintDoubleBox(QPainter& painter, const CellGlyph& glyph, const QRectF& area,
                    qreal halfSpacing) {
    for (const Direction& direction : directions) {
        const bool near = glyph.reaches(direction.near);
        const bool far = glyph.reaches(direction.far);
        if (!near && !far)
            continue;
        const qreal start = direction.start(area);
        const qreal end = direction.end(area);
        const qreal before = direction.centre(area) - halfSpacing;
        const qreal behind = direction.centre(area) + halfSpacing;
        const qreal middle = direction.centreAcross(area);
        for (const auto& [side, across] : {std::pair{direction.low, middle - halfSpacing},
                                           std::pair{direction.high, middle + halfSpacing}}) {
            if (!glyph.reaches(side)) {
                painter.drawLine(direction.line(across, near ? start : before, far ? end : behind));
                continue;
            }
            if (near)
                painter.drawLine(direction.line(across, start, before));
            if (far)
                painter.drawLine(direction.line(across, behind, end));
        }
    }
}

QRectF blockArea(const CellGlyph& glyph, const QRectF& area, qreal overlap) {
    const bool wide = glyph.reaches(CellGlyph::Left) && glyph.reaches(CellGlyph::Right);
    const bool tall = glyph.reaches(CellGlyph::Up) && glyph.reaches(CellGlyph::Down);
    const qreal width = wide ? area.width() : area.width() / 2;
    const qreal height = tall ? area.height() : area.height() / 2;
    return {glyph.reaches(CellGlyph::Left) ? area.left() : area.left() + width,
            glyph.reaches(CellGlyph::Up) ? area.top() : area.top() + height, width + overlap,
            height + overlap};
}

} // namespace

void paintCell(QPainter& painter, const Cell& cell, const QRectF& area, qreal overlap) {
    painter.fillRect(area.adjusted(0, 0, overlap, overlap), cell.background);
    painter.setPen(cell.foreground);
    switch (cell.glyph.kind) {
    case CellGlyph::Kind::Blank:
        break;
    case CellGlyph::Kind::Character:
        painter.drawText(area, Qt::AlignCenter, cell.glyph.character);
        break;
    case CellGlyph::Kind::SingleBox:
        paintSingleBox(painter, cell.glyph, area);
        break;
    case CellGlyph::Kind::DoubleBox:
        paintDoubleBox(painter, cell.glyph, area, overlap);
        break;
    case CellGlyph::Kind::Block:
        painter.fillRect(blockArea(cell.glyph, area, overlap), cell.foreground);
        break;
    }
}
