#include "CanvasPool.h"

#include <utility>

namespace {

struct Loan {
    std::shared_ptr<CanvasPool> pool;
    std::unique_ptr<ScreenCanvas> canvas;

    static void end(void* loan) {
        const std::unique_ptr<Loan> ended(static_cast<Loan*>(loan));
        ended->pool->give(std::move(ended->canvas));
    }
};

} // namespace

std::unique_ptr<ScreenCanvas> CanvasPool::take(const QSize& size) {
    std::unique_ptr<ScreenCanvas> canvas;
    {
        const QMutexLocker lock(&m_mutex);
        canvas = std::move(m_spare);
    }
    if (!canvas || canvas->size() != size)
        canvas = std::make_unique<ScreenCanvas>(size);
    return canvas;
}

void CanvasPool::give(std::unique_ptr<ScreenCanvas> canvas) {
    const QMutexLocker lock(&m_mutex);
    std::swap(m_spare, canvas);
}

QImage CanvasPool::lend(std::unique_ptr<ScreenCanvas> canvas) {
    const QSize size = canvas->size();
    const auto* pixels = reinterpret_cast<const uchar*>(canvas->pixels());
    auto loan = std::make_unique<Loan>(Loan{shared_from_this(), std::move(canvas)});
    QImage image(pixels, size.width(), size.height(), size.width() * qsizetype{sizeof(QRgb)},
                 QImage::Format_RGB32, &Loan::end, loan.get());
    // From here on the image owns it.
    static_cast<void>(loan.release());
    return image;
}
