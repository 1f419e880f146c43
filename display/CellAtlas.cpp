#include "CellAtlas.h"

#include "FontSizing.h"
#include "SharedByLook.h"

#include <algorithm>
#include <utility>

namespace {

/// Room for a dozen screens without a letter in common, or so.
constexpr std::size_t smallestLimit = std::size_t{2048} * 1024;
constexpr std::size_t limitInImages = 4;

/// What is small shares memory; what is not has its own, so that little is left over of a block.
constexpr std::size_t blockPixels = 8192;
constexpr std::size_t smallPixels = blockPixels / 16;
/// Pixels to a side: smaller cells would reach further than into their neighbours.
constexpr double smallestCell = 4;

/// Width through height: double lines, an eighth of the width from the centre, would leave flatter
/// cells.
constexpr double widestShape = 4;

constexpr quint16 absentCell = 0xFFFF;

/// What one entry takes beside its pixels, with room for as many again as there are.
constexpr std::size_t entryBytes = 2 * sizeof(CellAtlas::Entry);
/// What a place in a hash table takes.
constexpr std::size_t groupBytes = 64;

quint16 numberOf(const std::optional<CellCode>& cell) {
    return cell ? static_cast<quint16>(cell->number()) : absentCell;
}

/// With a font of its own, which no other thread's painting changes.
CellLook ownLook(CellLook look) {
    look.font = sizedFont(look.font, look.letterSize);
    return look;
}

} // namespace

std::shared_ptr<CellAtlas> CellAtlas::shared(const CellLook& look) {
    static SharedByLook<CellAtlas> atlases;
    return atlases.find(ownLook(look));
}

bool CellAtlas::suits(const CellLook& look) {
    const auto isOpaque = [](const QColor& color) { return color.alpha() == 255; };
    const auto& [foreground, background] = look.colors;
    const double width = static_cast<double>(look.imageSize.width()) / look.columns;
    const double height = static_cast<double>(look.imageSize.height()) / look.rows;
    return width >= smallestCell && height >= smallestCell && width <= widestShape * height &&
           std::all_of(foreground.begin(), foreground.end(), isOpaque) &&
           std::all_of(background.begin(), background.end(), isOpaque);
}

CellAtlas::CellAtlas(const CellLook& look)
    : m_look(look), m_grid(look.imageSize, look.columns, look.rows),
      m_alone(static_cast<std::size_t>(look.columns) * static_cast<std::size_t>(look.rows) *
              CellCode::count / pageCells) {}

std::size_t CellAtlas::limit() const {
    const auto width = static_cast<std::size_t>(m_look.imageSize.width());
    const auto height = static_cast<std::size_t>(m_look.imageSize.height());
    return std::max(smallestLimit, limitInImages * width * height * sizeof(QRgb));
}

std::size_t CellAtlas::bytes() const {
    return m_blockBytes + m_entries.size() * entryBytes +
           static_cast<std::size_t>(m_groups.size()) * groupBytes + m_pages * sizeof(Page) +
           m_alone.size() * sizeof(m_alone[0]);
}

void CellAtlas::forget() {
    for (std::unique_ptr<Page>& page : m_alone)
        page.reset();
    m_pages = 0;
    m_groups = {};
    m_entries = {};
    m_blanks = {};
    m_blocks.clear();
    m_free = nullptr;
    m_freePixels = 0;
    m_blockBytes = 0;
    m_anyReach = false;
    ++m_epoch;
}

/// Where the index of a cell is kept that no neighbour reaches into; none when it is not known yet.
CellAtlas::Index& CellAtlas::indexOf(int place, CellCode cell) {
    const std::size_t number = static_cast<std::size_t>(place) * CellCode::count + cell.number();
    std::unique_ptr<Page>& page = m_alone[number / pageCells];
    if (!page) {
        page = std::make_unique_for_overwrite<Page>();
        page->fill(none);
        ++m_pages;
    }
    return (*page)[number % pageCells];
}

CellAtlas::Index CellAtlas::add(const PreparedCell& prepared) {
    m_entries.push_back(
        {prepared.kept, keep(prepared.pixels), blank(prepared.background), prepared.reach});
    m_anyReach = m_anyReach || prepared.reach != 0;
    return static_cast<Index>(m_entries.size() - 1);
}

QRgb* CellAtlas::allocate(std::size_t pixels) {
    m_blocks.push_back(std::make_unique_for_overwrite<QRgb[]>(pixels));
    m_blockBytes += pixels * sizeof(QRgb);
    return m_blocks.back().get();
}

const QRgb* CellAtlas::keep(const std::vector<QRgb>& pixels) {
    QRgb* kept = nullptr;
    if (pixels.size() > smallPixels) {
        kept = allocate(pixels.size());
    } else {
        if (pixels.size() > m_freePixels) {
            m_free = allocate(blockPixels);
            m_freePixels = blockPixels;
        }
        kept = std::exchange(m_free, m_free + pixels.size());
        m_freePixels -= pixels.size();
    }
    std::copy(pixels.begin(), pixels.end(), kept);
    return kept;
}

/// A row of that background.
const QRgb* CellAtlas::blank(QRgb background) {
    const auto found = std::find_if(m_blanks.begin(), m_blanks.end(),
                                    [background](const QRgb* row) { return *row == background; });
    if (found != m_blanks.end())
        return *found;
    const int columns = m_grid.columns();
    const int widest = (m_grid.imageSize().width() + columns - 1) / columns;
    return m_blanks.emplace_back(
        keep(std::vector<QRgb>(static_cast<std::size_t>(widest), background)));
}

std::size_t CellAtlas::held() {
    const QMutexLocker lock(&m_mutex);
    return bytes();
}

CellAtlas::Session::Session(CellAtlas& atlas, QRgb* pixels)
    : m_atlas(atlas), m_pixels(pixels), m_lock(&atlas.m_mutex) {
    if (m_atlas.bytes() > m_atlas.limit())
        m_atlas.forget();
}

CellAtlas::Index CellAtlas::Session::alone(int column, int row, CellCode cell) {
    Index& index = m_atlas.indexOf(m_atlas.m_grid.placeKind(column, row), cell);
    if (index != none)
        return index;
    // Blanks are the same everywhere.
    Index& common = cell.isBlank() ? m_atlas.indexOf(0, cell) : index;
    if (common == none)
        common = m_atlas.add(preparer().alone(column, row, cell));
    index = common;
    return index;
}

CellAtlas::Index CellAtlas::Session::among(int column, int row, CellCode cell,
                                           const CellPreparer::Neighbours& neighbours) {
    const Group group{static_cast<quint32>(m_atlas.m_grid.placeKind(column, row)),
                      {numberOf(cell), numberOf(neighbours.right), numberOf(neighbours.downLeft),
                       numberOf(neighbours.down), numberOf(neighbours.downRight)}};
    if (const auto found = m_atlas.m_groups.constFind(group); found != m_atlas.m_groups.constEnd())
        return *found;
    PreparedCell prepared = preparer().among(column, row, cell, neighbours);
    const Index added = m_atlas.add(prepared);
    m_atlas.m_groups.insert(group, added);
    return added;
}

CellPreparer& CellAtlas::Session::preparer() {
    if (!m_preparer)
        m_preparer.emplace(m_atlas.m_look, m_atlas.m_grid, m_pixels);
    return *m_preparer;
}
