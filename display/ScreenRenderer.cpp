#include "ScreenRenderer.h"

#include "CanvasPool.h"

#include <QPainter>

#include <utility>

ScreenRenderer::ScreenRenderer() = default;

ScreenRenderer::~ScreenRenderer() {
    leavePool();
}

void ScreenRenderer::leavePool() {
    if (m_pool)
        m_pool->leave(this);
}

ScreenRenderer::Rendering ScreenRenderer::render(const TextScreen& screen, const QSize& size,
                                                 const std::atomic<bool>& restart) {
    if (CellLook look = screen.look(size); look != m_look) {
        leavePool();
        const bool suits = CellAtlas::suits(look);
        m_atlas = suits ? CellAtlas::shared(look) : nullptr;
        m_pool = suits ? CanvasPool::shared(m_atlas->look()) : nullptr;
        if (m_pool)
            m_pool->join(this);
        m_look = std::move(look);
        m_lastCells.clear();
    }
    std::vector<CellCode> cells = screen.cells();
    if (cells == m_lastCells)
        return {m_lastImage, {}};

    Rendering rendering;
    if (m_atlas) {
        rendering = paintKept(cells, restart);
    } else {
        rendering = {paintPlainly(screen, restart), QRect(QPoint(0, 0), size)};
        m_lastShown = {};
    }
    if (!rendering.image.isNull()) {
        m_lastImage = rendering.image;
        m_lastCells = std::move(cells);
    }
    return rendering;
}

QImage ScreenRenderer::paintPlainly(const TextScreen& screen, const std::atomic<bool>& restart) {
    QImage image(m_look.imageSize, QImage::Format_RGB32);
    if (image.isNull())
        return {};
    QPainter painter(&image);
    screen.paintText(painter, image.size(), restart);
    return restart ? QImage() : image;
}

ScreenRenderer::Rendering ScreenRenderer::paintKept(const std::vector<CellCode>& cells,
                                                    const std::atomic<bool>& restart) {
    std::unique_ptr<ScreenCanvas> canvas = m_pool->take(this);
    if (!canvas->paint(m_atlas, cells, restart)) {
        m_pool->give(this, std::move(canvas));
        return {};
    }
    Rendering rendering;
    rendering.changed = changedArea(m_lastShown, canvas->shown());
    m_lastShown = canvas->shown();
    rendering.image = m_pool->lend(this, std::move(canvas));
    return rendering;
}
