#include "CanvasPool.h"

#include "SharedByLook.h"

#include <algorithm>
#include <utility>

namespace {

struct Loan {
    std::shared_ptr<CanvasPool> pool;
    const void* owner;
    std::unique_ptr<ScreenCanvas> canvas;

    static void end(void* loan) {
        const std::unique_ptr<Loan> ended(static_cast<Loan*>(loan));
        ended->pool->give(ended->owner, std::move(ended->canvas));
    }
};

std::size_t mostSpares(const QSize& size) {
    const std::size_t bytes = static_cast<std::size_t>(size.width()) *
                              static_cast<std::size_t>(size.height()) * sizeof(QRgb);
    return std::clamp(CanvasPool::maxBytes / bytes, std::size_t{1}, CanvasPool::maxSpares);
}

} // namespace

std::shared_ptr<CanvasPool> CanvasPool::shared(const CellLook& look) {
    static SharedByLook<CanvasPool> pools;
    return pools.find(look);
}

CanvasPool::CanvasPool(const CellLook& look) : m_look(look), m_most(mostSpares(look.imageSize)) {}

void CanvasPool::join(const void* owner) {
    const QMutexLocker lock(&m_mutex);
    m_owners.insert(owner);
}

void CanvasPool::leave(const void* owner) {
    const QMutexLocker lock(&m_mutex);
    m_owners.erase(owner);
    std::erase_if(m_spares, [owner](const Spare& spare) { return spare.owner == owner; });
}

std::unique_ptr<ScreenCanvas> CanvasPool::take(const void* owner) {
    {
        const QMutexLocker lock(&m_mutex);
        auto spare = std::find_if(m_spares.rbegin(), m_spares.rend(),
                                  [owner](const Spare& kept) { return kept.owner == owner; });
        // Another's only when there are that many that one will have to go soon; and then the one
        // that a processor most likely has in its cache.
        if (spare == m_spares.rend() && m_spares.size() > m_most * 2 / 3)
            spare = m_spares.rbegin();
        if (spare != m_spares.rend()) {
            std::unique_ptr<ScreenCanvas> canvas = std::move(spare->canvas);
            m_spares.erase(std::next(spare).base());
            return canvas;
        }
    }
    return std::make_unique<ScreenCanvas>(m_look.imageSize);
}

void CanvasPool::give(const void* owner, std::unique_ptr<ScreenCanvas> canvas) {
    std::unique_ptr<ScreenCanvas> oldest;
    const QMutexLocker lock(&m_mutex);
    if (!m_owners.contains(owner))
        return;
    if (m_spares.size() == m_most) {
        oldest = std::move(m_spares.front().canvas);
        m_spares.erase(m_spares.begin());
    }
    m_spares.push_back({owner, std::move(canvas)});
}

QImage CanvasPool::lend(const void* owner, std::unique_ptr<ScreenCanvas> canvas) {
    const QSize size = canvas->size();
    const auto* pixels = reinterpret_cast<const uchar*>(canvas->pixels());
    auto loan = std::make_unique<Loan>(Loan{shared_from_this(), owner, std::move(canvas)});
    QImage image(pixels, size.width(), size.height(), size.width() * qsizetype{sizeof(QRgb)},
                 QImage::Format_RGB32, &Loan::end, loan.get());
    // From here on the image owns it.
    static_cast<void>(loan.release());
    return image;
}

std::size_t CanvasPool::spares() {
    const QMutexLocker lock(&m_mutex);
    return m_spares.size();
}
