#pragma once

#include "ScreenRenderer.h"

#include <QImage>
#include <QRegion>

/// The newest rendering of a ScreenRenderer that its reader has not taken yet, and where it differs
/// from the one taken before, whatever came in between. Not safe for threads by itself.
class NewestRendering {
public:
    /// A rendering that the reader is to get, instead of one that is still there.
    void put(const ScreenRenderer::Rendering& rendering);

    /// A rendering that the reader is not to get, complete or cut short.
    void skip(const ScreenRenderer::Rendering& rendering);

    /// The rendering, which then is the one taken before; one without an image when there is none.
    ScreenRenderer::Rendering take();

private:
    QImage m_image;
    /// Where m_image differs from the one taken before.
    QRegion m_changed;
    /// Where the last rendering of all differs from m_image, or from the one taken before.
    QRegion m_changedSince;
};
