#include "CellGrid.h"

#include <algorithm>
#include <cmath>

namespace {

/// Whether sums of `cell` and its eighths are exact, so that a whole number of pixels makes no
/// difference to what becomes of a fraction.
bool isExact(double cell) {
    return cell * 8 == std::floor(cell * 8);
}

/// The first cells of all keep to themselves: letters wider than a cell start at negative
/// positions there, and those are rounded the other way.
constexpr std::size_t peculiarCells = 2;

std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

} // namespace

CellGrid::Axis::Axis(double cell, int count, int length, bool isLastAlone) {
    double start = 0;
    // Positions are added up, so that the end of a cell is exactly the beginning of the next.
    for (int i = 0; i < count; ++i, start += cell) {
        starts.push_back(start);
        edges.push_back(std::min(qRound(start), length));
    }
    edges.push_back(length);

    for (std::size_t i = 0; i < starts.size(); ++i) {
        const auto isLike = [this, i](double other) {
            return other - std::floor(other) == starts[i] - std::floor(starts[i]);
        };
        const bool isLast = i + 1 == starts.size();
        const bool isAlone = i < peculiarCells || (isLast && isLastAlone) || !isExact(cell);
        const auto like = isAlone
                              ? starts.begin() + static_cast<std::ptrdiff_t>(i)
                              : std::find_if(starts.begin() + peculiarCells, starts.end(), isLike);
        kinds.push_back(static_cast<int>(like - starts.begin()));
    }
}

CellGrid::CellGrid(const QSize& size, int columns, int rows)
    : m_size(size),
      m_cell(static_cast<qreal>(size.width()) / columns, static_cast<qreal>(size.height()) / rows),
      m_columns(columns), m_rows(rows), m_horizontal(m_cell.width(), columns, size.width(), true),
      m_vertical(m_cell.height(), rows, size.height(), false) {}

QRectF CellGrid::area(int column, int row) const {
    return {{m_horizontal.starts[at(column)], m_vertical.starts[at(row)]}, m_cell};
}
