#include "text_renderthread.h"

#include "ThreadAnnotations.h"

#include <QMutexLocker>
#include <QSemaphore>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

QSize withinLimits(const QSize& size) {
    const double width = size.width();
    const double height = size.height();
    const double scale =
        std::min({1.0, text_renderthread::maxSide / width, text_renderthread::maxSide / height,
                  std::sqrt(text_renderthread::maxPixels / (width * height))});
    return {std::max(1, static_cast<int>(width * scale)),
            std::max(1, static_cast<int>(height * scale))};
}

/// How many threads may paint at a time: one processor stays free for the windows, however many
/// screens are resized at once.
QSemaphore& brushes() {
    static QSemaphore all(std::max(1, QThread::idealThreadCount() - 1));
    return all;
}

} // namespace

text_renderthread::text_renderthread(QObject* parent)
    : text_renderthread(defaultColumns, defaultRows, parent) {}

text_renderthread::text_renderthread(int columns, int rows, QObject* parent) : QThread(parent) {
    m_screen.columns = std::max(1, columns);
    m_screen.rows = std::max(1, rows);
}

text_renderthread::~text_renderthread() {
    {
        const QMutexLocker lock(&m_mutex);
        m_abort = true;
        m_restart = true;
        m_condition.wakeOne();
    }
    wait();
    annotateJoined(this);
}

void text_renderthread::updateTextAndAttr(const QSize& size, const QVector<char>& text,
                                          const QVector<char>& attr, bool /*force*/) {
    const QMutexLocker lock(&m_mutex);
    m_requestedSize = size;
    m_requestedText = text;
    m_requestedAttr = attr;
    m_restart = true;
    if (isRunning())
        m_condition.wakeOne();
    else
        start();
}

void text_renderthread::setFont(const QFont& font) {
    const QMutexLocker lock(&m_mutex);
    m_screen.font = font;
    renderAgain();
}

void text_renderthread::setColors(QColor text, QColor background, QColor highlight) {
    const QMutexLocker lock(&m_mutex);
    m_screen.colors = ColorTables(text, background, highlight);
    renderAgain();
}

void text_renderthread::setGrid(int columns, int rows) {
    const QMutexLocker lock(&m_mutex);
    m_screen.columns = std::max(1, columns);
    m_screen.rows = std::max(1, rows);
    m_screen.sizing = {};
    renderAgain();
}

void text_renderthread::drawNow(QPainter& painter, const QSize& size) {
    static const std::atomic<bool> never = false;
    if (size.isEmpty())
        return;
    const QMutexLocker lock(&m_mutex);
    m_screen.fitFont(size);
    m_screen.paintText(painter, size, never);
}

/// With the mutex locked: has the last request rendered anew, if there has been one.
void text_renderthread::renderAgain() {
    if (!isRunning())
        return;
    m_restart = true;
    m_condition.wakeOne();
}

void text_renderthread::run() {
    ScreenRenderer renderer;
    while (auto request = nextRequest())
        deliver(render(renderer, *request));
    annotateEnd(this);
}

/// Waits for the next thing to render; nothing when the thread is to end.
std::optional<text_renderthread::Request> text_renderthread::nextRequest() {
    const QMutexLocker lock(&m_mutex);
    while (!m_restart)
        annotatedWait(m_condition, m_mutex);
    if (m_abort)
        return std::nullopt;
    m_restart = false;
    m_screen.text = m_requestedText;
    m_screen.attr = m_requestedAttr;
    return Request{m_screen, m_requestedSize};
}

ScreenRenderer::Rendering text_renderthread::render(ScreenRenderer& renderer, Request& request) {
    if (request.size.isEmpty())
        return {};
    const QSize size = withinLimits(request.size);
    request.screen.fitFont(size);
    {
        const QMutexLocker lock(&m_mutex);
        // Another grid means other cells: a size chosen for those of before is of no use to it.
        if (m_screen.columns == request.screen.columns && m_screen.rows == request.screen.rows)
            m_screen.sizing = request.screen.sizing;
    }
    brushes().acquire();
    const QSemaphoreReleaser brush(brushes());
    return renderer.render(request.screen, size, m_restart);
}

/// Hands a rendering to the owner's thread, unless it was cut short. The owner finds at most one,
/// the newest, however long it was busy.
void text_renderthread::deliver(const ScreenRenderer::Rendering& rendering) {
    const QMutexLocker lock(&m_mutex);
    if (m_restart || rendering.image.isNull()) {
        m_finished.skip(rendering);
        return;
    }
    m_finished.put(rendering);
    QMetaObject::invokeMethod(this, &text_renderthread::emitFinished, Qt::QueuedConnection);
}

void text_renderthread::emitFinished() {
    ScreenRenderer::Rendering newest;
    {
        const QMutexLocker lock(&m_mutex);
        newest = m_finished.take();
    }
    if (newest.image.isNull())
        return;
    m_keyBefore = std::exchange(m_keyNow, newest.image.cacheKey());
    m_changedNow = newest.changed;
    emit renderedImage(newest.image);
}

std::optional<QRegion> text_renderthread::difference(qint64 before, qint64 after) const {
    if (before != m_keyBefore || after != m_keyNow)
        return std::nullopt;
    return m_changedNow;
}
