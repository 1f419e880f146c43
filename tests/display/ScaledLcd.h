#pragma once

#include "LCD7100.h"
#include "ReferencePainter.h"

#include <QImage>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>
#include <QWidget>

/// A screen in a window of a display with more than one pixel to the unit, at any place in it.
class ScaledLcd {
public:
    ScaledLcd(const QSize& size, const QPoint& place)
        : screen(ReferencePainter::randomScreen(21)), lcd(new LCD7100(&window)) {
        window.setPalette(Qt::black);
        window.setAutoFillBackground(true);
        lcd->findChild<QTimer*>()->stop();
        lcd->setGeometry(QRect(place, size));
        window.resize(size.width() + 50, size.height() + 50);
        tell();
        window.show();
    }

    void tell() {
        lcd->setTextWait(screen.text.data());
        lcd->setAttrWait(screen.attr.data());
        lcd->redraw(false);
    }

    /// What can be seen of the screen, in pixels of the display.
    QImage picture() {
        const qreal ratio = window.devicePixelRatioF();
        QImage grabbed = window.grab().toImage().convertToFormat(QImage::Format_RGB32);
        grabbed.setDevicePixelRatio(1);
        const QRectF place(QPointF(lcd->pos()) * ratio, QSizeF(lcd->size()) * ratio);
        const QPoint from(qRound(place.left()), qRound(place.top()));
        const QPoint to(qRound(place.right()) - 1, qRound(place.bottom()) - 1);
        return grabbed.copy(QRect(from, to));
    }

    /// Whether the screen comes to look as the reference, rendered at `rendered` pixels.
    bool shows(const QSize& rendered) {
        const QImage expected = ReferencePainter::paint(screen, rendered);
        return QTest::qWaitFor(
            [&] {
                const QImage seen = picture();
                return seen == expected.copy(seen.rect());
            },
            60'000);
    }

    ReferenceScreen screen;
    QWidget window;
    LCD7100* lcd;
};
