#pragma once

#include "LCD7100.h"
#include "ReferencePainter.h"

#include <QImage>
#include <QPainter>
#include <QTest>
#include <QTimer>

constexpr int patienceMs = 60'000;

/// The screen widget, shown, with its cursor blinking only when told to.
class ShownLcd {
public:
    explicit ShownLcd(const QSize& size = QSize(480, 240)) {
        lcd.resize(size);
        timer()->stop();
        lcd.show();
        reference.attr.assign(320, '\0');
        for (int i = 0; i < 320; ++i)
            reference.text += static_cast<char>(i % 256);
    }

    QTimer* timer() const { return lcd.findChild<QTimer*>(); }
    QImage picture() { return lcd.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    QImage expected() const { return ReferencePainter::paint(reference, lcd.size()); }

    /// Whether the widget comes to show the reference screen.
    bool shows() {
        return QTest::qWaitFor([this] { return picture() == expected(); }, patienceMs);
    }

    void set(const ReferenceScreen& screen) {
        reference.text = screen.text;
        reference.attr = screen.attr;
        lcd.setTextWait(reference.text.data());
        lcd.setAttrWait(reference.attr.data());
    }

    LCD7100 lcd;
    ReferenceScreen reference;
};
