#include "WindowGeometry.h"

#include <QByteArray>
#include <QGuiApplication>
#include <QScreen>
#include <QStyle>
#include <QVariant>
#include <QWidget>

#include <algorithm>
#include <numeric>

namespace {

/// Bytes that end too early would be taken for a window of one pixel: they must be as long as the
/// window's own are now.
bool isWhole(const QByteArray& geometry, const QWidget& window) {
    return geometry.size() == window.saveGeometry().size();
}

/// The sides of a damaged rectangle may be as far apart as numbers go.
QSize sizeOf(const QRect& rect) {
    const auto length = [](int first, int last) {
        return static_cast<int>(std::clamp<qint64>(qint64{last} - first + 1, 0, QWIDGETSIZE_MAX));
    };
    return {length(rect.left(), rect.right()), length(rect.top(), rect.bottom())};
}

const QScreen* screenBelow(const QRect& place) {
    return QGuiApplication::screenAt({std::midpoint(place.left(), place.right()), place.top()});
}

/// Whether all of it can be seen, on one screen or across several, and there is a title to hold it
/// by.
bool isWithinReach(const QRect& place, const QSize& least) {
    const QScreen* const screen = screenBelow(place);
    if (screen == nullptr)
        return false;
    const QRect desktop = screen->availableVirtualGeometry();
    return desktop.contains(place) && desktop.contains(QRect(place.topLeft(), least));
}

/// The place nearest to the one wanted that lies on the screen.
QRect onScreen(const QRect& wanted, const QSize& least, const QRect& screen) {
    const QSize size = sizeOf(wanted).expandedTo(least).boundedTo(screen.size());
    const QRect topLefts(screen.topLeft(), screen.size() - size + QSize(1, 1));
    return {QPoint(std::clamp(wanted.left(), topLefts.left(), topLefts.right()),
                   std::clamp(wanted.top(), topLefts.top(), topLefts.bottom())),
            size};
}

} // namespace

bool windowgeometry::restore(QWidget& window, const QVariant& stored) {
    const QByteArray geometry = stored.toByteArray();
    if (!isWhole(geometry, window) || !window.restoreGeometry(geometry))
        return false;
    const Qt::WindowStates state = window.windowState();
    const bool fills = state & (Qt::WindowMaximized | Qt::WindowFullScreen);
    const QRect restored = fills ? window.normalGeometry() : window.geometry();
    const QSize least = window.minimumSizeHint().expandedTo(window.minimumSize());
    if (isWithinReach(restored, least))
        return true;
    const QScreen* const screen = screenBelow(restored);
    QRect available = (screen ? screen : QGuiApplication::primaryScreen())->availableGeometry();
    available.adjust(0, window.style()->pixelMetric(QStyle::PM_TitleBarHeight), 0, 0);
    window.setWindowState(Qt::WindowNoState);
    window.setGeometry(onScreen(restored, least, available));
    window.setWindowState(state);
    return true;
}
