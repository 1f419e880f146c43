#include "PaintWatch.h"
#include "ScaledLcd.h"
#include "TestEnvironment.h"

/// The screen widget on a display with five pixels to four units.
class TestLCD7100Fractional : public QObject {
    Q_OBJECT

private slots:
    void textIsRenderedInPixelsOfTheDevice_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("place");
        QTest::addColumn<QSize>("rendered");
        QTest::newRow("whole") << QSize(320, 160) << QPoint(0, 0) << QSize(400, 200);
        QTest::newRow("quarters") << QSize(301, 151) << QPoint(0, 0) << QSize(377, 189);
        QTest::newRow("halves") << QSize(302, 150) << QPoint(0, 0) << QSize(378, 188);
        QTest::newRow("elsewhere") << QSize(320, 160) << QPoint(4, 8) << QSize(400, 200);
        QTest::newRow("between pixels") << QSize(320, 160) << QPoint(1, 3) << QSize(400, 200);
        QTest::newRow("both") << QSize(301, 151) << QPoint(1, 1) << QSize(377, 189);
    }
    void textIsRenderedInPixelsOfTheDevice() {
        QFETCH(const QSize, size);
        QFETCH(const QPoint, place);
        QFETCH(const QSize, rendered);
        ScaledLcd scaled(size, place);
        QCOMPARE(scaled.lcd->devicePixelRatioF(), 1.25);
        QVERIFY(scaled.shows(rendered));
    }

    void nothingShinesThroughAtTheEdges() {
        for (int offset = 0; offset < 8; ++offset) {
            ScaledLcd scaled(QSize(300 + offset, 150 + offset), QPoint(offset, 2 * offset));
            scaled.screen.text.assign(320, '\xDB');
            scaled.screen.attr.assign(320, '\0');
            scaled.tell();
            QImage blue(scaled.picture().size(), QImage::Format_RGB32);
            blue.fill(Qt::blue);
            QTRY_VERIFY_WITH_TIMEOUT(scaled.picture() == blue, 60'000);
        }
    }

    void aChangedCellIsRepaintedWithAllItsPixels() {
        ScaledLcd scaled(QSize(301, 151), QPoint(1, 1));
        QVERIFY(scaled.shows(QSize(377, 189)));
        QTRY_VERIFY_WITH_TIMEOUT(scaled.window.isVisible(), 60'000);
        QCoreApplication::processEvents();
        PaintWatch watch(*scaled.lcd);
        scaled.screen.text[40 * 3 + 7] = '\xDB';
        scaled.screen.attr[40 * 3 + 7] = 3;
        scaled.tell();
        QTRY_VERIFY_WITH_TIMEOUT(!watch.regions.isEmpty(), 60'000);
        const QRect painted = watch.regions[0].boundingRect();
        // 377 / 40 and 189 / 8 pixels a cell, and 1.25 pixels a unit.
        const QRectF cell(7 * 377 / 40.0 / 1.25, 3 * 189 / 8.0 / 1.25, 377 / 40.0 / 1.25,
                          189 / 8.0 / 1.25);
        QVERIFY(QRectF(painted).contains(cell));
        QVERIFY(painted.width() < 16 && painted.height() < 30);
    }
};

int main(int argc, char** argv) {
    qputenv("QT_SCALE_FACTOR", "1.25");
    return runTest<TestLCD7100Fractional>(argc, argv);
}

#include "test_lcd7100_fractional.moc"
