#include "ScaledLcd.h"
#include "TestEnvironment.h"

/// The screen widget on a display with two pixels to the unit.
class TestLCD7100Scaled : public QObject {
    Q_OBJECT

private slots:
    void textIsRenderedInPixelsOfTheDevice() {
        ScaledLcd scaled(QSize(300, 150), QPoint(3, 5));
        QCOMPARE(scaled.lcd->devicePixelRatioF(), 2.0);
        QVERIFY(scaled.shows(QSize(600, 300)));
        scaled.screen.text[17] = 'X';
        scaled.tell();
        QVERIFY(scaled.shows(QSize(600, 300)));
    }
};

int main(int argc, char** argv) {
    qputenv("QT_SCALE_FACTOR", "2");
    return runTest<TestLCD7100Scaled>(argc, argv);
}

#include "test_lcd7100_scaled.moc"
