#include "FirstPaint.h"

#include <QEvent>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <utility>

namespace {

/// Longer than a window takes to be painted, too short to be waited for.
constexpr std::chrono::milliseconds patience{200};

} // namespace

FirstPaint::FirstPaint(QWidget* widget, std::function<void()> then)
    : QObject(widget), m_then(std::move(then)) {
    widget->installEventFilter(this);
    QTimer::singleShot(patience, this, &FirstPaint::call);
}

bool FirstPaint::eventFilter(QObject* /*watched*/, QEvent* event) {
    if (event->type() == QEvent::Paint)
        QMetaObject::invokeMethod(this, &FirstPaint::call, Qt::QueuedConnection);
    return false;
}

void FirstPaint::call() {
    // Paintings and the timer may each have asked for it.
    if (const auto then = std::exchange(m_then, nullptr)) {
        deleteLater();
        then();
    }
}
