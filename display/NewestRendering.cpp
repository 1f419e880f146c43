#include "NewestRendering.h"

#include <utility>

void NewestRendering::put(const ScreenRenderer::Rendering& rendering) {
    m_image = rendering.image;
    m_changed |= std::exchange(m_changedSince, QRegion()) | rendering.changed;
}

void NewestRendering::skip(const ScreenRenderer::Rendering& rendering) {
    m_changedSince |= rendering.changed;
}

ScreenRenderer::Rendering NewestRendering::take() {
    if (m_image.isNull())
        return {};
    return {std::exchange(m_image, QImage()), std::exchange(m_changed, QRegion())};
}
