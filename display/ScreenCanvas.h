#pragma once

#include "CellAtlas.h"
#include "CellCode.h"

#include <QRegion>
#include <QRgb>
#include <QSize>

#include <atomic>
#include <memory>
#include <vector>

/// Pixels that know which screen they show, so that showing another takes no more than painting
/// the cells in which the two differ. Belongs to one thread at a time.
class ScreenCanvas {
public:
    explicit ScreenCanvas(const QSize& size);

    const QSize& size() const { return m_size; }
    const QRgb* pixels() const { return m_pixels; }

    /// Makes the pixels show `cells`, row by row, in the look of `atlas`, whose image size must be
    /// this one's. Stops at the next cell once `restart` is set, and then returns false; what is
    /// left to do is done by the next call.
    bool paint(const std::shared_ptr<CellAtlas>& atlas, const std::vector<CellCode>& cells,
               const std::atomic<bool>& restart);

    /// What is shown: comparable with what another canvas, or this one at another time, shows.
    struct Shown {
        std::shared_ptr<CellAtlas> atlas;
        quint64 epoch = 0;
        std::vector<CellAtlas::Index> cells;
    };
    const Shown& shown() const { return m_shown; }

private:
    enum class Work : unsigned char {
        None,
        Repaint,         ///< may have to be painted
        RepaintAndReach, ///< and so may the cells that it reaches into, or reached into
    };

    void startOver(const std::shared_ptr<CellAtlas>& atlas, quint64 epoch);
    void startPainting();
    bool take(CellAtlas::Session& session, const std::vector<CellCode>& cells,
              const std::atomic<bool>& restart);
    void spread();
    bool choose(CellAtlas::Session& session, const std::atomic<bool>& restart);
    CellAtlas::Index chosen(CellAtlas::Session& session, int column, int row) const;
    void fillMostly(const CellAtlas::Session& session);
    bool copyChosen(const CellAtlas::Session& session, const std::atomic<bool>& restart);
    void paintCell(const CellAtlas::Session& session, const QRect& own, CellAtlas::Index from,
                   CellAtlas::Index to);
    void fill(const QRect& area, QRgb color);
    bool isMarked(int row) const;

    QRgb* pixel(const QPoint& at) { return m_pixels + qptrdiff{at.y()} * m_size.width() + at.x(); }
    std::size_t index(int column, int row) const {
        const auto columns = static_cast<std::size_t>(m_shown.atlas->grid().columns());
        return static_cast<std::size_t>(row) * columns + static_cast<std::size_t>(column);
    }

    /// Where the reach of a cell is, or of one beside the screen or below it.
    std::size_t reachIndex(int column, int row) const {
        const auto columns = static_cast<std::size_t>(m_shown.atlas->grid().columns());
        return static_cast<std::size_t>(row) * (columns + 2) + static_cast<std::size_t>(column + 1);
    }

    QSize m_size;
    std::unique_ptr<QRgb[]> m_memory;
    QRgb* m_pixels;
    Shown m_shown;
    /// Where nothing is shown yet.
    QRgb m_filled = 0;
    bool m_isFilled = false;
    /// What is to be shown, and what each cell of it is when no neighbour reaches into it.
    std::vector<CellCode> m_cells;
    std::vector<CellAtlas::Index> m_alone;
    /// How each of these reaches into its neighbours, with nothing around the screen that does.
    std::vector<unsigned char> m_reach;
    /// What is to be copied into each cell.
    std::vector<CellAtlas::Index> m_chosen;
    std::vector<Work> m_work;
    /// Whether all of the screen to be shown is in m_cells and m_alone.
    bool m_isTaken = false;
};

/// The pixels in which two things shown differ: in each row of cells from the first that differs to
/// the last. All of them when the two cannot be compared.
QRegion changedArea(const ScreenCanvas::Shown& before, const ScreenCanvas::Shown& after);
