#include "CellGrid.h"
#include "TestEnvironment.h"

#include <QRegion>

#include <cmath>
#include <set>

namespace {

double fraction(double value) {
    return value - std::floor(value);
}

int kindsOf(const CellGrid& grid) {
    std::set<int> kinds;
    for (int row = 0; row < grid.rows(); ++row) {
        for (int column = 0; column < grid.columns(); ++column)
            kinds.insert(grid.placeKind(column, row));
    }
    return static_cast<int>(kinds.size());
}

} // namespace

class TestCellGrid : public QObject {
    Q_OBJECT

private slots:
    void areasAreFractional() {
        const CellGrid grid(QSize(250, 121), 40, 8);
        QCOMPARE(grid.cellSize(), QSizeF(6.25, 15.125));
        QCOMPARE(grid.overlap(), 0.78125);
        QCOMPARE(grid.area(0, 0), QRectF(0, 0, 6.25, 15.125));
        QCOMPARE(grid.area(3, 1), QRectF(18.75, 15.125, 6.25, 15.125));
        QCOMPARE(grid.area(39, 7), QRectF(243.75, 105.875, 6.25, 15.125));
    }

    void aCellBeginsWhereTheOneBeforeEnds() {
        // 6.025 a cell: the sum of forty is not the product.
        const CellGrid grid(QSize(241, 121), 40, 8);
        for (int column = 1; column < 40; ++column) {
            const QRectF before = grid.area(column - 1, 0);
            QVERIFY(grid.area(column, 0).left() == before.left() + before.width());
        }
    }

    void pixelsAreRounded() {
        const CellGrid grid(QSize(250, 121), 40, 8);
        QCOMPARE(grid.pixels(0, 0), QRect(0, 0, 6, 15));
        QCOMPARE(grid.pixels(1, 0), QRect(6, 0, 7, 15));
        // From 12.5 to 18.75, both rounded up; from 15.125 to 30.25.
        QCOMPARE(grid.pixels(2, 1), QRect(13, 15, 6, 15));
        QCOMPARE(grid.pixels(39, 7), QRect(244, 106, 6, 15));
    }

    void pixelsMakeUpTheImage_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("columns");
        QTest::addColumn<int>("rows");
        for (const QSize size : {QSize(240, 120), QSize(241, 121), QSize(352, 177), QSize(39, 7),
                                 QSize(1, 1), QSize(1919, 959), QSize(16384, 3)}) {
            QTest::addRow("%d x %d", size.width(), size.height()) << size << 40 << 8;
            QTest::addRow("%d x %d, 80 x 25", size.width(), size.height()) << size << 80 << 25;
            QTest::addRow("%d x %d, 1 x 1", size.width(), size.height()) << size << 1 << 1;
        }
    }
    void pixelsMakeUpTheImage() {
        QFETCH(const QSize, size);
        QFETCH(const int, columns);
        QFETCH(const int, rows);
        const CellGrid grid(size, columns, rows);
        QRect all;
        qint64 count = 0;
        for (int row = 0; row < rows; ++row) {
            for (int column = 0; column < columns; ++column) {
                const QRect pixels = grid.pixels(column, row);
                all |= pixels;
                count += qint64{pixels.width()} * pixels.height();
                if (column > 0)
                    QCOMPARE(pixels.left(), grid.pixels(column - 1, row).right() + 1);
                if (row > 0)
                    QCOMPARE(pixels.top(), grid.pixels(column, row - 1).bottom() + 1);
            }
        }
        QCOMPARE(all, QRect(QPoint(0, 0), size));
        QCOMPARE(count, qint64{size.width()} * size.height());
    }

    void kindsAreFewWhereCellsAreWhole_data() {
        QTest::addColumn<QSize>("size");
        QTest::addColumn<int>("kinds");
        // The first two of each direction and the last column keep to themselves.
        QTest::newRow("whole cells") << QSize(480, 240) << 4 * 3;
        QTest::newRow("halves") << QSize(500, 240) << 5 * 3;
        QTest::newRow("eighths") << QSize(245, 121) << 11 * 8;
        QTest::newRow("fortieths") << QSize(241, 120) << 40 * 3;
    }
    void kindsAreFewWhereCellsAreWhole() {
        QFETCH(const QSize, size);
        QTEST(kindsOf(CellGrid(size, 40, 8)), "kinds");
    }

    void placesOfAKindAreWholePixelsApart() {
        for (int width = 160; width < 700; ++width) {
            const CellGrid grid(QSize(width, width / 2), 40, 8);
            for (int column = 0; column < 40; ++column) {
                const int kind = grid.placeKind(column, 0);
                QVERIFY(kind >= 0 && kind <= column);
                QCOMPARE(fraction(grid.area(column, 0).left()),
                         fraction(grid.area(kind, 0).left()));
                QCOMPARE(grid.pixels(column, 0).width(), grid.pixels(kind, 0).width());
                if (column < 2)
                    QCOMPARE(kind, column);
            }
        }
    }

    void kindsAreCountedWithinTheGrid() {
        const CellGrid grid(QSize(241, 121), 40, 8);
        QCOMPARE(grid.placeKind(39, 7), 319);
        QCOMPARE(kindsOf(grid), 320);
    }
};

int main(int argc, char** argv) {
    return runTest<TestCellGrid>(argc, argv);
}

#include "test_cellgrid.moc"
