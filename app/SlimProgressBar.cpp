#include "SlimProgressBar.h"

#include <QPainter>
#include <QStyle>
#include <QTimerEvent>

#include <algorithm>

namespace {

constexpr int framePeriod = 50;
/// Milliseconds that the moving piece takes from one end to the other.
constexpr qint64 sweep = 1500;
constexpr int thousand = 1000;
/// The moving piece is that part of the bar.
constexpr int busyShare = 4;

} // namespace

SlimProgressBar::SlimProgressBar(QWidget* parent) : QProgressBar(parent) {
    m_clock.start();
}

int SlimProgressBar::busyPosition(qint64 milliseconds) {
    const qint64 there = milliseconds % (2 * sweep);
    return static_cast<int>(std::min(there, 2 * sweep - there) * thousand / sweep);
}

QRect SlimProgressBar::filled(const QRect& room) const {
    QRect part = room;
    if (maximum() > minimum()) {
        part.setWidth(room.width() * (std::max(value(), minimum()) - minimum()) /
                      (maximum() - minimum()));
    } else {
        part.setWidth(room.width() / busyShare);
        part.translate((room.width() - part.width()) * busyPosition(m_clock.elapsed()) / thousand,
                       0);
    }
    return QStyle::visualRect(layoutDirection(), room, part);
}

void SlimProgressBar::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(palette().color(QPalette::Mid));
    painter.setBrush(palette().base());
    painter.drawRect(rect().adjusted(0, 0, -1, -1));
    painter.fillRect(filled(rect().adjusted(1, 1, -1, -1)), palette().highlight());
}

void SlimProgressBar::showEvent(QShowEvent* event) {
    QProgressBar::showEvent(event);
    m_frames.start(framePeriod, this);
}

void SlimProgressBar::hideEvent(QHideEvent* event) {
    QProgressBar::hideEvent(event);
    m_frames.stop();
}

void SlimProgressBar::timerEvent(QTimerEvent* event) {
    if (event->timerId() != m_frames.timerId())
        QProgressBar::timerEvent(event);
    else if (maximum() == minimum())
        update();
}
