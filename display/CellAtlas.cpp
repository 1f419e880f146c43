#include "CellAtlas.h"

#include "FontSizing.h"
#include "SharedByLook.h"

#include <algorithm>
#include <utility>

namespace {

/// Room for a dozen screens without a letter in common, or so.
constexpr std::size_t smallestLimit = std::size_t{1024} * 1024;
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

/// What one entry takes beside its pixels: itself, and its place in a hash table.
constexpr std::size_t entryBytes = 64;

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
    : m_look(look), m_grid(look.imageSize, look.columns, look.rows) {}

std::size_t CellAtlas::limit() const {
    const auto width = static_cast<std::size_t>(m_look.imageSize.width());
    const auto height = static_cast<std::size_t>(m_look.imageSize.height());
    return std::max(smallestLimit, limitInImages * width * height * sizeof(QRgb));
}

std::size_t CellAtlas::bytes() const {
    return m_blockBytes + m_entries.size() * entryBytes;
}

void CellAtlas::forget() {
    m_alone = {};
    m_groups = {};
    m_entries = {};
    m_blocks.clear();
    m_free = nullptr;
    m_freePixels = 0;
    m_blockBytes = 0;
    m_anyReach = false;
    ++m_epoch;
}

CellAtlas::Index CellAtlas::add(const PreparedCell& prepared) {
    m_entries.push_back(
        {prepared.kept, keep(prepared.pixels), prepared.background, prepared.reach});
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
    // Blanks are the same everywhere.
    const int place = cell.isBlank() ? 0 : m_atlas.m_grid.placeKind(column, row);
    const quint32 key = static_cast<quint32>(place) * CellCode::count + cell.number();
    if (const auto found = m_atlas.m_alone.constFind(key); found != m_atlas.m_alone.constEnd())
        return *found;
    const Index added = m_atlas.add(preparer().alone(column, row, cell));
    m_atlas.m_alone.insert(key, added);
    return added;
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
