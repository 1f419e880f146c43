#pragma once

#include <QRect>
#include <QRgb>

#include <vector>

/// The own pixels of a painted cell; see CellGrid::pixels(). A value; any thread.
struct PreparedCell {
    /// The neighbours into which the painting reached, to be combined. It never stays visible in
    /// the others: they are painted later.
    enum Reach : unsigned char { Left = 1, UpLeft = 2, Up = 4, UpRight = 8 };

    /// What is not background, and in the same rows at least the columns that most letters take:
    /// what replaces a letter then seldom has to wipe out anything beside it. From the upper left
    /// corner of the cell's own pixels; empty when all is background.
    QRect kept;
    /// The pixels of `kept`, row by row.
    std::vector<QRgb> pixels;
    /// What the cell shows outside `kept`.
    QRgb background = 0;
    unsigned char reach = 0;
};
