#include "FirstPaint.h"

#include <QEvent>
#include <QWidget>

#include <utility>

FirstPaint::FirstPaint(QWidget* widget, std::function<void()> then)
    : QObject(widget), m_then(std::move(then)) {
    widget->installEventFilter(this);
}

bool FirstPaint::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Paint) {
        watched->removeEventFilter(this);
        QMetaObject::invokeMethod(
            this,
            [this] {
                deleteLater();
                m_then();
            },
            Qt::QueuedConnection);
    }
    return false;
}
