#pragma once

#include "CellCode.h"
#include "CellLook.h"
#include "ColorTables.h"
#include "FontSizing.h"

#include <QFont>
#include <QSize>
#include <QVector>

#include <atomic>
#include <vector>

class QPainter;

/// The character screen of an instrument with all that painting it takes: a value, so that a
/// thread that paints has a copy that nobody else changes.
struct TextScreen {
    /// Character codes and attributes, row by row from the top. Cells that they are too short for
    /// count as 0, and so does an attribute of 4 or more.
    QVector<char> text;
    QVector<char> attr;
    int columns = 40;
    int rows = 8;

    QFont font;
    FontSizing sizing;
    ColorTables colors;

    /// Chooses the size of the letters for painting at `size`, which must not be empty.
    void fitFont(const QSize& size);

    /// What the cells look like at `size`, in the letters last chosen.
    CellLook look(const QSize& size) const;

    /// All cells, row by row.
    std::vector<CellCode> cells() const;

    /// Paints the whole screen, from (0, 0) to `size`, in the letters last chosen. Stops at the
    /// next cell once `restart` is set.
    void paintText(QPainter& painter, const QSize& size, const std::atomic<bool>& restart) const;
};
