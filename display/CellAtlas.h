#pragma once

#include "CellCode.h"
#include "CellGrid.h"
#include "CellLook.h"
#include "CellPreparer.h"

#include <QHash>
#include <QMutex>

#include <array>
#include <memory>
#include <optional>
#include <vector>

/// Cells of one look, painted once and kept, so that a screen can be put together by copying.
///
/// All screens of the same look share one, whatever thread they are painted in: everything but
/// making and finding one goes through a Session, and there is one Session at a time. Memory is
/// bounded: when limit() is exceeded, all is forgotten before the next session, so that there is
/// never more than that and what one session adds, which is at most two images, a fifteenth of them
/// and 64 KiB more, and half a KiB for each cell.
class CellAtlas {
public:
    using Index = quint32;
    static constexpr Index none = ~Index{0};

    /// A cell as it is to be copied: outside `kept`, which counts from the upper left corner of the
    /// cell's own pixels, all is background.
    struct Entry {
        QRect kept;
        /// Those of `kept`, row by row.
        const QRgb* pixels;
        /// A row of background, as wide as any cell.
        const QRgb* blank;
        unsigned char reach;
    };

    /// The one atlas of a look; it lives as long as somebody has it. Any thread.
    static std::shared_ptr<CellAtlas> shared(const CellLook& look);

    /// Whether cells of a look can be kept at all. With colours to be seen through, or in cells
    /// that are tiny or very flat, what one cell shows depends on too many others.
    static bool suits(const CellLook& look);

    /// Only for looks that it suits.
    explicit CellAtlas(const CellLook& look);

    const CellLook& look() const { return m_look; }
    const CellGrid& grid() const { return m_grid; }

    /// Bytes beyond which it forgets.
    std::size_t limit() const;
    /// Bytes that it takes now. Waits for a session to end.
    std::size_t held();

    class Session;

private:
    /// A cell and those of its neighbours that reach into it.
    struct Group {
        quint32 place;
        /// The cell, then right, down left, down, down right of it; absent ones are absentCell.
        std::array<quint16, 5> cells;

        friend bool operator==(const Group&, const Group&) = default;
        friend size_t qHash(const Group& group, size_t seed) {
            return qHashBits(group.cells.data(), sizeof(group.cells), seed ^ group.place);
        }
    };

    /// Cells of 64 codes that follow each other, at one place.
    static constexpr std::size_t pageCells = 64;
    using Page = std::array<Index, pageCells>;

    std::size_t bytes() const;
    Index& indexOf(int place, CellCode cell);
    void forget();
    Index add(const PreparedCell& prepared);
    QRgb* allocate(std::size_t pixels);
    const QRgb* keep(const std::vector<QRgb>& pixels);
    const QRgb* blank(QRgb background);

    const CellLook m_look;
    const CellGrid m_grid;
    QMutex m_mutex;
    /// By place and cell; only pages with something on them are there. Looking cells up in a hash
    /// table took a fifth of the time in which a small screen is rendered.
    std::vector<std::unique_ptr<Page>> m_alone;
    std::size_t m_pages = 0;
    QHash<Group, Index> m_groups;
    std::vector<Entry> m_entries;
    /// Of each background.
    std::vector<const QRgb*> m_blanks;
    /// Pixels of entries, in blocks that stay where they are.
    std::vector<std::unique_ptr<QRgb[]>> m_blocks;
    QRgb* m_free = nullptr;
    std::size_t m_freePixels = 0;
    std::size_t m_blockBytes = 0;
    quint64 m_epoch = 0;
    bool m_anyReach = false;
};

/// The use of an atlas while one screen is painted. Belongs to one thread; others wait.
class CellAtlas::Session {
public:
    /// `pixels`, those of a whole image, are painted on when there are cells to be prepared.
    Session(CellAtlas& atlas, QRgb* pixels);

    /// Whether the pixels have been painted on.
    bool hasPainted() const { return m_preparer.has_value(); }

    /// Indices of another epoch mean nothing any more.
    quint64 epoch() const { return m_atlas.m_epoch; }

    /// The cell at that place when no neighbour reaches into it.
    Index alone(int column, int row, CellCode cell);

    /// The cell at that place with what `neighbours` paint into it.
    Index among(int column, int row, CellCode cell, const CellPreparer::Neighbours& neighbours);

    /// Whether any cell of this epoch reaches into a neighbour.
    bool anyReach() const { return m_atlas.m_anyReach; }

    const Entry& entry(Index index) const { return m_atlas.m_entries[index]; }

private:
    CellPreparer& preparer();

    CellAtlas& m_atlas;
    QRgb* m_pixels;
    QMutexLocker<QMutex> m_lock;
    std::optional<CellPreparer> m_preparer;
};
