#pragma once

#include <QRect>
#include <QRgb>

#include <vector>

/// The own pixels of a painted cell; see CellGrid::pixels(). A value; any thread.
struct PreparedCell {
    /// The neighbours into which the painting reached, to be combined. It never stays visible in
    /// the others: they are painted later.
    enum Reach : unsigned char { Left = 1, UpLeft = 2, Up = 4, UpRight = 8 };

    /// What is not background, from the upper left corner of the cell's own pixels.
    QRect inked;
    /// The pixels of `inked`, row by row.
    std::vector<QRgb> pixels;
    /// What the cell shows outside `inked`.
    QRgb background = 0;
    unsigned char reach = 0;
};
