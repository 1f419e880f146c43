#include "ScreenCanvas.h"

#include "PixelRows.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

using Index = CellAtlas::Index;

namespace {

/// Bytes that a processor moves at once.
constexpr std::size_t cacheLine = 64;

/// Where in a cache line an image begins: in the middle, as the rows of letters in cells of 48
/// pixels, those of images 1920 wide, then lie in two lines instead of three.
constexpr std::size_t beginning = cacheLine / 2;

std::unique_ptr<QRgb[]> allocate(const QSize& size) {
    const std::size_t pixels =
        static_cast<std::size_t>(size.width()) * static_cast<std::size_t>(size.height());
    return std::make_unique_for_overwrite<QRgb[]>(pixels + cacheLine / sizeof(QRgb));
}

/// The first pixel of `memory` that lies as it should.
QRgb* firstPixel(QRgb* memory) {
    const std::size_t place = reinterpret_cast<std::uintptr_t>(memory) % cacheLine;
    return memory + (cacheLine + beginning - place) % cacheLine / sizeof(QRgb);
}

} // namespace

ScreenCanvas::ScreenCanvas(const QSize& size)
    : m_size(size), m_memory(allocate(size)), m_pixels(firstPixel(m_memory.get())) {}

bool ScreenCanvas::paint(const std::shared_ptr<CellAtlas>& atlas,
                         const std::vector<CellCode>& cells, const std::atomic<bool>& restart) {
    CellAtlas::Session session(*atlas, m_pixels);
    if (m_shown.atlas != atlas || m_shown.epoch != session.epoch())
        startOver(atlas, session.epoch());
    const bool isReady = take(session, cells, restart) && choose(session, restart);
    if (session.hasPainted())
        startPainting();
    return isReady && copyChosen(session, restart);
}

/// Everything is to be done, for another atlas.
void ScreenCanvas::startOver(const std::shared_ptr<CellAtlas>& atlas, quint64 epoch) {
    const CellGrid& grid = atlas->grid();
    const auto count =
        static_cast<std::size_t>(grid.columns()) * static_cast<std::size_t>(grid.rows());
    m_shown.atlas = atlas;
    m_shown.epoch = epoch;
    m_cells.assign(count, {});
    m_alone.assign(count, CellAtlas::none);
    m_reach.assign(reachIndex(grid.columns(), grid.rows()) + 1, 0);
    m_chosen.assign(count, CellAtlas::none);
    m_work.assign(count, Work::RepaintAndReach);
    m_isTaken = false;
    startPainting();
}

/// Nothing of what is to be shown is to be seen.
void ScreenCanvas::startPainting() {
    m_shown.cells.assign(m_cells.size(), CellAtlas::none);
    m_isFilled = false;
}

/// Whether there is a cell with work in a row.
bool ScreenCanvas::isMarked(int row) const {
    const auto columns = static_cast<std::size_t>(m_shown.atlas->grid().columns());
    const Work* const work = &m_work[index(0, row)];
    // All alike and like the first: quicker than a look at each.
    return work[0] != Work::None || std::memcmp(work, work + 1, columns - 1) != 0;
}

/// Prepares the cells that are not shown yet and marks them.
bool ScreenCanvas::take(CellAtlas::Session& session, const std::vector<CellCode>& cells,
                        const std::atomic<bool>& restart) {
    const CellGrid& grid = m_shown.atlas->grid();
    for (int row = 0; row < grid.rows(); ++row) {
        const std::size_t start = index(0, row);
        if (m_isTaken &&
            std::memcmp(&m_cells[start], &cells[start],
                        static_cast<std::size_t>(grid.columns()) * sizeof(CellCode)) == 0)
            continue;
        for (int column = 0; column < grid.columns(); ++column) {
            const std::size_t i = index(column, row);
            if (m_alone[i] != CellAtlas::none && m_cells[i] == cells[i])
                continue;
            if (restart)
                return false;
            m_alone[i] = session.alone(column, row, cells[i]);
            m_reach[reachIndex(column, row)] = session.entry(m_alone[i]).reach;
            m_cells[i] = cells[i];
            m_work[i] = Work::RepaintAndReach;
        }
    }
    m_isTaken = true;
    return true;
}

/// Marks what changed cells may reach into: the neighbours that are painted before them.
void ScreenCanvas::spread() {
    const CellGrid& grid = m_shown.atlas->grid();
    const auto mark = [this, &grid](int column, int row) {
        if (column < 0 || column >= grid.columns() || row < 0)
            return;
        Work& work = m_work[index(column, row)];
        work = std::max(work, Work::Repaint);
    };
    for (int row = 0; row < grid.rows(); ++row) {
        if (!isMarked(row))
            continue;
        for (int column = 0; column < grid.columns(); ++column) {
            if (m_work[index(column, row)] != Work::RepaintAndReach)
                continue;
            mark(column - 1, row);
            mark(column - 1, row - 1);
            mark(column, row - 1);
            mark(column + 1, row - 1);
        }
    }
}

/// Fills pixels that show nothing yet with the background that most cells have.
void ScreenCanvas::fillMostly(const CellAtlas::Session& session) {
    std::array<std::size_t, ColorTables::attributeCount> counts{};
    for (const CellCode& cell : m_cells)
        ++counts[cell.color];
    const auto color = std::max_element(counts.begin(), counts.end()) - counts.begin();
    const auto example = std::find_if(m_cells.begin(), m_cells.end(),
                                      [color](CellCode cell) { return cell.color == color; });
    m_filled = *session.entry(m_alone[static_cast<std::size_t>(example - m_cells.begin())]).blank;
    fill(QRect(QPoint(0, 0), m_size), m_filled);
    m_isFilled = true;
}

/// Finds or prepares what is to be copied into the cells that are marked.
bool ScreenCanvas::choose(CellAtlas::Session& session, const std::atomic<bool>& restart) {
    const CellGrid& grid = m_shown.atlas->grid();
    const bool anyReach = session.anyReach();
    if (anyReach)
        spread();
    for (int row = 0; row < grid.rows(); ++row) {
        if (!isMarked(row))
            continue;
        for (int column = 0; column < grid.columns(); ++column) {
            const std::size_t i = index(column, row);
            if (m_work[i] == Work::None)
                continue;
            if (restart)
                return false;
            m_chosen[i] = anyReach ? chosen(session, column, row) : m_alone[i];
            m_work[i] = Work::None;
        }
    }
    return true;
}

Index ScreenCanvas::chosen(CellAtlas::Session& session, int column, int row) const {
    const std::size_t i = index(column, row);
    const unsigned char* const reach = &m_reach[reachIndex(column, row)];
    const auto columns = static_cast<std::size_t>(m_shown.atlas->grid().columns());
    const unsigned char* const below = reach + columns + 2;
    const int right = reach[1] & PreparedCell::Left;
    const int downLeft = below[-1] & PreparedCell::UpRight;
    const int down = below[0] & PreparedCell::Up;
    const int downRight = below[1] & PreparedCell::UpLeft;
    if ((right | downLeft | down | downRight) == 0)
        return m_alone[i];
    const auto reaching = [this](int reaches, std::size_t at) {
        return reaches != 0 ? std::optional<CellCode>(m_cells[at]) : std::nullopt;
    };
    return session.among(column, row, m_cells[i],
                         {reaching(right, i + 1), reaching(downLeft, i + columns - 1),
                          reaching(down, i + columns), reaching(downRight, i + columns + 1)});
}

/// Copies what was chosen, where something else is shown.
bool ScreenCanvas::copyChosen(const CellAtlas::Session& session, const std::atomic<bool>& restart) {
    const CellGrid& grid = m_shown.atlas->grid();
    if (!m_isFilled)
        fillMostly(session);
    for (int row = 0; row < grid.rows(); ++row) {
        const std::size_t start = index(0, row);
        if (std::equal(&m_chosen[start], &m_chosen[start] + grid.columns(), &m_shown.cells[start]))
            continue;
        for (int column = 0; column < grid.columns(); ++column) {
            const std::size_t i = index(column, row);
            if (m_shown.cells[i] == m_chosen[i])
                continue;
            if (restart)
                return false;
            paintCell(session, grid.pixels(column, row), m_shown.cells[i], m_chosen[i]);
            m_shown.cells[i] = m_chosen[i];
        }
    }
    return true;
}

void ScreenCanvas::paintCell(const CellAtlas::Session& session, const QRect& own, Index from,
                             Index to) {
    const bool isBare = from == CellAtlas::none;
    const CellAtlas::Entry& entry = session.entry(to);
    const QRect& kept = entry.kept;
    const QRgb before = isBare ? m_filled : *session.entry(from).blank;
    QRect stale = isBare ? QRect() : session.entry(from).kept;
    if (before != *entry.blank) {
        fill(own, *entry.blank);
        stale = QRect();
    }
    if (kept.isEmpty()) {
        fill(stale.translated(own.topLeft()), *entry.blank);
        return;
    }
    if (stale.isEmpty())
        stale = kept;

    const auto fillBeside = [&](int left, int right) {
        if (left < right)
            fill(QRect(left, stale.top(), right - left, stale.height()).translated(own.topLeft()),
                 *entry.blank);
    };
    fillBeside(stale.left(), kept.left());
    fillBeside(kept.right() + 1, stale.right() + 1);
    const int above = std::max(0, kept.top() - stale.top());
    const int below = std::max(0, stale.bottom() - kept.bottom());
    pixelrows::copy(pixel(own.topLeft() + QPoint(kept.left(), kept.top() - above)), m_size.width(),
                    {entry.pixels, kept.width(), kept.height(), entry.blank, above, below});
}

void ScreenCanvas::fill(const QRect& area, QRgb color) {
    QRgb* line = pixel(area.topLeft());
    if (area.width() == m_size.width()) {
        std::fill_n(line, qptrdiff{area.width()} * area.height(), color);
        return;
    }
    pixelrows::fill(line, m_size.width(), area.width(), area.height(), color);
}

QRegion changedArea(const ScreenCanvas::Shown& before, const ScreenCanvas::Shown& after) {
    if (!after.atlas)
        return {};
    const CellGrid& grid = after.atlas->grid();
    if (before.atlas != after.atlas || before.epoch != after.epoch)
        return QRect(QPoint(0, 0), grid.imageSize());
    QRegion changed;
    const auto columns = static_cast<std::ptrdiff_t>(grid.columns());
    for (int row = 0; row < grid.rows(); ++row) {
        const auto start = before.cells.begin() + row * columns;
        const auto end = start + columns;
        const auto other = after.cells.begin() + row * columns;
        if (std::equal(start, end, other))
            continue;
        const auto first = std::mismatch(start, end, other).first;
        const auto last =
            std::mismatch(std::make_reverse_iterator(end), std::make_reverse_iterator(start),
                          std::make_reverse_iterator(other + columns))
                .first.base() -
            1;
        changed |= grid.pixels(static_cast<int>(first - start), row) |
                   grid.pixels(static_cast<int>(last - start), row);
    }
    return changed;
}
