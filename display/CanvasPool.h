#pragma once

#include "CellLook.h"
#include "ScreenCanvas.h"

#include <QImage>
#include <QMutex>

#include <memory>
#include <unordered_set>
#include <vector>

/// Hands canvases out as images and takes them back when nobody has the image any more, wherever
/// that happens. Any thread.
///
/// All screens of one look share one. It keeps a spare canvas for each of them as long as they are
/// few; the spares of many would take more memory than painting on another screen's takes time.
class CanvasPool : public std::enable_shared_from_this<CanvasPool> {
public:
    /// Bytes and number of the spares that are kept at most; one is kept however large it is.
    static constexpr std::size_t maxBytes = std::size_t{16} * 1024 * 1024;
    static constexpr std::size_t maxSpares = 24;

    /// The one pool of a look; it lives as long as somebody has it, or an image from it.
    static std::shared_ptr<CanvasPool> shared(const CellLook& look);

    /// Only for looks with an image that is not empty.
    explicit CanvasPool(const CellLook& look);

    const CellLook& look() const { return m_look; }

    /// The owner will take canvases, until it leaves.
    void join(const void* owner);

    /// Drops the owner's canvases, those that come back later included.
    void leave(const void* owner);

    /// A canvas, with whatever it shows: the owner's own if it is there.
    std::unique_ptr<ScreenCanvas> take(const void* owner);

    /// Takes a canvas back; to be dropped when the owner has left.
    void give(const void* owner, std::unique_ptr<ScreenCanvas> canvas);

    /// The canvas as an image without a copy. Whoever writes to the image gets a copy of it, so
    /// that the canvas goes on showing what it knows.
    QImage lend(const void* owner, std::unique_ptr<ScreenCanvas> canvas);

    /// How many canvases are kept.
    std::size_t spares();

private:
    struct Spare {
        const void* owner;
        std::unique_ptr<ScreenCanvas> canvas;
    };

    const CellLook m_look;
    const std::size_t m_most;
    QMutex m_mutex;
    std::unordered_set<const void*> m_owners;
    /// The one given last is the last.
    std::vector<Spare> m_spares;
};
