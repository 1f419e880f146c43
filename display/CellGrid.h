#pragma once

#include <QRectF>
#include <QSize>

#include <vector>

/// Where the cells of a character screen lie on an image of a given size: cells are of fractional
/// size, pixels are not. A value; any thread.
class CellGrid {
public:
    /// `size` must not be empty, `columns` and `rows` must be at least 1.
    CellGrid(const QSize& size, int columns, int rows);

    const QSize& imageSize() const { return m_size; }
    const QSizeF& cellSize() const { return m_cell; }
    int columns() const { return m_columns; }
    int rows() const { return m_rows; }

    /// The exact area of a cell.
    QRectF area(int column, int row) const;

    /// How far backgrounds and blocks reach beyond the right and lower edges of their cells.
    qreal overlap() const { return m_cell.width() / 8; }

    /// The pixels that are the cell's own once its right and lower neighbours are painted too. The
    /// own pixels of all cells make up the image.
    QRect pixels(int column, int row) const {
        const int* const x = &m_horizontal.edges[static_cast<std::size_t>(column)];
        const int* const y = &m_vertical.edges[static_cast<std::size_t>(row)];
        return {QPoint(x[0], y[0]), QPoint(x[1] - 1, y[1] - 1)};
    }

    /// A number that only those places have in common in which the same cell, painted among the
    /// same neighbours, gives the same pixels: places a whole number of pixels apart. Between 0 and
    /// columns * rows - 1.
    int placeKind(int column, int row) const {
        return m_vertical.kinds[static_cast<std::size_t>(row)] * m_columns +
               m_horizontal.kinds[static_cast<std::size_t>(column)];
    }

private:
    /// One of the two directions.
    struct Axis {
        std::vector<double> starts;
        /// One more than there are cells.
        std::vector<int> edges;
        std::vector<int> kinds;

        /// The last column keeps to itself: what reaches up and to the right has nothing to reach
        /// into there, and would not be seen to reach.
        Axis(double cell, int count, int length, bool isLastAlone);
    };

    QSize m_size;
    QSizeF m_cell;
    int m_columns;
    int m_rows;
    Axis m_horizontal;
    Axis m_vertical;
};
