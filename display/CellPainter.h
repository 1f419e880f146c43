#pragma once

#include "CellGlyph.h"

#include <QColor>
#include <QRectF>

class QPainter;

/// One cell of the character screen, ready to be painted. A value; any thread.
struct Cell {
    CellGlyph glyph;
    QColor foreground;
    QColor background;
};

/// Paints one cell into `area` with the painter's font. The background and the blocks reach
/// `overlap` beyond the right and lower edges, which hides seams between cells of fractional size;
/// cells must therefore be painted from left to right and from top to bottom. Half the distance
/// of the two lines of a double box piece is `overlap` too. Leaves the painter's pen changed.
void paintCell(QPainter& painter, const Cell& cell, const QRectF& area, qreal overlap);
