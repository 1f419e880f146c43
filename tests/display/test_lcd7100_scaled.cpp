#include "LCD7100.h"
#include "ReferencePainter.h"
#include "TestEnvironment.h"

/// The screen widget on a display with two pixels to the unit.
class TestLCD7100Scaled : public QObject {
    Q_OBJECT

private slots:
    void textIsRenderedInPixelsOfTheDevice() {
        LCD7100 lcd;
        lcd.resize(300, 150);
        const ReferenceScreen screen = ReferencePainter::randomScreen(21);
        lcd.setTextWait(screen.text.data());
        lcd.setAttrWait(screen.attr.data());
        lcd.show();
        QCOMPARE(lcd.devicePixelRatioF(), 2.0);
        const QImage expected = ReferencePainter::paint(screen, QSize(600, 300));
        const auto picture = [&lcd] {
            QImage grabbed = lcd.grab().toImage().convertToFormat(QImage::Format_RGB32);
            grabbed.setDevicePixelRatio(1);
            return grabbed;
        };
        QTRY_VERIFY_WITH_TIMEOUT(picture() == expected, 60'000);
    }
};

int main(int argc, char** argv) {
    qputenv("QT_SCALE_FACTOR", "2");
    return runTest<TestLCD7100Scaled>(argc, argv);
}

#include "test_lcd7100_scaled.moc"
