#pragma once

#include "CellLook.h"
#include "ScreenCanvas.h"
#include "TextScreen.h"

#include <QImage>
#include <QRegion>

#include <atomic>
#include <memory>
#include <vector>

class CanvasPool;

/// Renders one screen again and again, each time with no more work than what changed. Belongs to
/// one thread; the images may go anywhere and are never written to again.
class ScreenRenderer {
public:
    struct Rendering {
        /// Null when the rendering was cut short.
        QImage image;
        /// Where it differs from the image returned before.
        QRegion changed;
    };

    ScreenRenderer();
    ~ScreenRenderer();
    ScreenRenderer(const ScreenRenderer&) = delete;
    ScreenRenderer& operator=(const ScreenRenderer&) = delete;

    /// An image of `size`, which must not be empty, in the letters that the screen last chose. Cut
    /// short once `restart` is set.
    Rendering render(const TextScreen& screen, const QSize& size, const std::atomic<bool>& restart);

private:
    void leavePool();
    QImage paintPlainly(const TextScreen& screen, const std::atomic<bool>& restart);
    Rendering paintKept(const std::vector<CellCode>& cells, const std::atomic<bool>& restart);

    /// None for looks whose cells cannot be kept.
    std::shared_ptr<CanvasPool> m_pool;
    std::shared_ptr<CellAtlas> m_atlas;
    CellLook m_look;

    QImage m_lastImage;
    /// Those of the last image; none when they would look different now.
    std::vector<CellCode> m_lastCells;
    ScreenCanvas::Shown m_lastShown;
};
