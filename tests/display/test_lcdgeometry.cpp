#include "LCDGeometry.h"
#include "TestEnvironment.h"

#include <climits>

class TestLCDGeometry : public QObject {
    Q_OBJECT

private slots:
    void cursorIsWhereTheCellIs_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("mode");
        QTest::addColumn<int>("column");
        QTest::addColumn<int>("row");
        QTest::addColumn<QRectF>("area");

        // 244 x 124: cells of 6 x 15 within the inset of 2.
        const QSize even(244, 124);
        QTest::newRow("block, first cell") << even << 2 << 1 << 1 << QRectF(2, 2, 6, 15);
        QTest::newRow("block, last cell") << even << 2 << 40 << 8 << QRectF(236, 107, 6, 15);
        QTest::newRow("block, inside") << even << 2 << 11 << 3 << QRectF(62, 32, 6, 15);
        QTest::newRow("underline, first cell") << even << 1 << 1 << 1 << QRectF(2, 15, 6, 2);
        QTest::newRow("underline, last cell") << even << 1 << 40 << 8 << QRectF(236, 120, 6, 2);
        QTest::newRow("fractions")
            << QSize(240, 120) << 2 << 2 << 2 << QRectF(7.9, 16.5, 5.9, 14.5);
        QTest::newRow("fractions, underline")
            << QSize(240, 120) << 1 << 2 << 2 << QRectF(7.9, 29, 5.9, 2);
        QTest::newRow("column 0 shows its inset") << even << 2 << 0 << 1 << QRectF(0, 2, 2, 15);
        QTest::newRow("column 41 shows its inset") << even << 2 << 41 << 1 << QRectF(242, 2, 2, 15);
    }
    void cursorIsWhereTheCellIs() {
        QFETCH(const QSize, size);
        QFETCH(const int, mode);
        QFETCH(const int, column);
        QFETCH(const int, row);
        QFETCH(const QRectF, area);
        const QRectF got = cursorArea(size, 40, 8, {mode, column, row});
        QVERIFY2(qAbs(got.left() - area.left()) < 1e-9 && qAbs(got.top() - area.top()) < 1e-9 &&
                     qAbs(got.width() - area.width()) < 1e-9 &&
                     qAbs(got.height() - area.height()) < 1e-9,
                 qPrintable(QStringLiteral("%1 %2 %3 %4")
                                .arg(got.left())
                                .arg(got.top())
                                .arg(got.width())
                                .arg(got.height())));
    }

    void noCursor_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<LCDTextCursor>("cursor");
        const QSize size(244, 124);
        QTest::newRow("off") << size << LCDTextCursor{0, 1, 1};
        QTest::newRow("mode 3") << size << LCDTextCursor{3, 1, 1};
        QTest::newRow("mode -1") << size << LCDTextCursor{-1, 1, 1};
        QTest::newRow("mode 255") << size << LCDTextCursor{255, 1, 1};
        QTest::newRow("far right") << size << LCDTextCursor{2, 255, 1};
        QTest::newRow("far below") << size << LCDTextCursor{2, 1, 255};
        QTest::newRow("hugely right") << size << LCDTextCursor{2, INT_MAX, INT_MAX};
        QTest::newRow("hugely left") << size << LCDTextCursor{1, INT_MIN, INT_MIN};
        QTest::newRow("no room") << QSize(4, 4) << LCDTextCursor{2, 1, 1};
        QTest::newRow("less than no room") << QSize(1, 1) << LCDTextCursor{2, 1, 1};
        QTest::newRow("no screen") << QSize(-1, -1) << LCDTextCursor{1, 1, 1};
    }
    void noCursor() {
        QFETCH(const QSize, size);
        QFETCH(const LCDTextCursor, cursor);
        QVERIFY(cursorArea(size, 40, 8, cursor).isEmpty());
    }

    void softKeys_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<QPoint>("click");
        QTest::addColumn<int>("key");

        const QSize even(240, 120);
        QTest::newRow("top") << even << QPoint(0, 0) << -1;
        QTest::newRow("just above") << even << QPoint(100, 89) << -1;
        QTest::newRow("exactly three quarters") << even << QPoint(100, 90) << -1;
        QTest::newRow("just below") << even << QPoint(100, 91) << 98;
        QTest::newRow("three quarters of an odd height, above")
            << QSize(240, 121) << QPoint(0, 90) << -1;
        QTest::newRow("three quarters of an odd height, below")
            << QSize(240, 121) << QPoint(0, 91) << 96;
        QTest::newRow("far left") << even << QPoint(0, 119) << 96;
        QTest::newRow("end of F1") << even << QPoint(47, 119) << 96;
        QTest::newRow("begin of F2") << even << QPoint(48, 119) << 97;
        QTest::newRow("begin of F3") << even << QPoint(96, 119) << 98;
        QTest::newRow("begin of F4") << even << QPoint(144, 119) << 99;
        QTest::newRow("end of F4") << even << QPoint(191, 119) << 99;
        QTest::newRow("begin of F5") << even << QPoint(192, 119) << 100;
        QTest::newRow("far right") << even << QPoint(239, 119) << 100;
        // 244 / 5 = 48: the bands end at 240, and the last four columns are F5 all the same.
        QTest::newRow("odd width, end of F5") << QSize(244, 120) << QPoint(239, 119) << 100;
        QTest::newRow("odd width, far right") << QSize(244, 120) << QPoint(243, 119) << 100;
        QTest::newRow("odd width, begin of F2") << QSize(244, 120) << QPoint(48, 119) << 97;
        QTest::newRow("narrower than its bands") << QSize(3, 120) << QPoint(2, 119) << 98;
        QTest::newRow("left of everything") << even << QPoint(-7, 119) << 96;
    }
    void softKeys() {
        QFETCH(const QSize, size);
        QFETCH(const QPoint, click);
        QTEST(softKeyAt(size, click.x(), click.y()), "key");
    }
};

int main(int argc, char** argv) {
    return runTest<TestLCDGeometry>(argc, argv);
}

#include "test_lcdgeometry.moc"
