#pragma once

#include "ScreenCanvas.h"

#include <QImage>
#include <QMutex>

#include <memory>

/// Hands canvases out as images and takes them back when nobody has the image any more, wherever
/// that happens. Keeps one. Any thread.
class CanvasPool : public std::enable_shared_from_this<CanvasPool> {
public:
    /// A canvas of that size, with whatever it shows.
    std::unique_ptr<ScreenCanvas> take(const QSize& size);

    /// Takes a canvas back.
    void give(std::unique_ptr<ScreenCanvas> canvas);

    /// The canvas as an image without a copy. Whoever writes to the image gets a copy of it, so
    /// that the canvas goes on showing what it knows.
    QImage lend(std::unique_ptr<ScreenCanvas> canvas);

private:
    QMutex m_mutex;
    std::unique_ptr<ScreenCanvas> m_spare;
};
