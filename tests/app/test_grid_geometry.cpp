#include "GridGeometry.h"
#include "TestEnvironment.h"

#include <limits>

class TestGridGeometry : public QObject {
    Q_OBJECT

private slots:
    void cells_data();
    void cells();
    void growing_data();
    void growing();
    void rebuilding_data();
    void rebuilding();
};

void TestGridGeometry::cells_data() {
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("maxColumns");
    QTest::addColumn<int>("row");
    QTest::addColumn<int>("column");

    QTest::newRow("first") << 0 << 2 << 0 << 0;
    QTest::newRow("second of two") << 1 << 2 << 0 << 1;
    QTest::newRow("third of two") << 2 << 2 << 1 << 0;
    QTest::newRow("fifth of two stands alone") << 4 << 2 << 2 << 0;
    QTest::newRow("one column") << 3 << 1 << 3 << 0;
    QTest::newRow("four columns") << 7 << 4 << 1 << 3;
    QTest::newRow("more columns than tiles") << 7 << std::numeric_limits<int>::max() << 0 << 7;
    QTest::newRow("no columns") << 3 << 0 << 3 << 0;
    QTest::newRow("negative columns") << 3 << std::numeric_limits<int>::min() << 3 << 0;
}

void TestGridGeometry::cells() {
    QFETCH(const int, index);
    QFETCH(const int, maxColumns);
    QFETCH(const int, row);
    QFETCH(const int, column);
    QCOMPARE(grid::cellAt(index, maxColumns).row, row);
    QCOMPARE(grid::cellAt(index, maxColumns).column, column);
}

void TestGridGeometry::growing_data() {
    QTest::addColumn<int>("tilesBefore");
    QTest::addColumn<int>("maxColumns");
    QTest::addColumn<QRect>("grown");

    // From 501 x 300 at (10, 20): left 10, top 20, right 510, bottom 319.
    QTest::newRow("first tile") << 0 << 2 << QRect(10, 20, 501, 300);
    QTest::newRow("second doubles the height") << 1 << 2 << QRect(10, 20, 501, 600);
    QTest::newRow("second doubles the height in one column too")
        << 1 << 1 << QRect(10, 20, 501, 600);
    QTest::newRow("second doubles the height in four columns too")
        << 1 << 4 << QRect(10, 20, 501, 600);
    QTest::newRow("third starts row 1: width by a whole") << 2 << 2 << QRect(10, 20, 1002, 300);
    QTest::newRow("fourth ends row 1") << 3 << 2 << QRect(10, 20, 501, 300);
    QTest::newRow("fifth starts row 2: width by a half") << 4 << 2 << QRect(10, 20, 751, 300);
    QTest::newRow("seventh starts row 3: width by a third") << 6 << 2 << QRect(10, 20, 668, 300);
    QTest::newRow("third in one column") << 2 << 1 << QRect(10, 20, 751, 300);
    QTest::newRow("third in three columns") << 2 << 3 << QRect(10, 20, 501, 300);
    QTest::newRow("fourth in three columns") << 3 << 3 << QRect(10, 20, 1002, 300);
    QTest::newRow("third, no columns allowed") << 2 << 0 << QRect(10, 20, 751, 300);
}

void TestGridGeometry::growing() {
    QFETCH(const int, tilesBefore);
    QFETCH(const int, maxColumns);
    QFETCH(const QRect, grown);
    QCOMPARE(grid::grown(QRect(10, 20, 501, 300), tilesBefore, maxColumns), grown);
}

void TestGridGeometry::rebuilding_data() {
    QTest::addColumn<int>("tiles");
    QTest::addColumn<int>("maxColumns");
    QTest::addColumn<int>("right");
    QTest::addColumn<int>("bottom");

    // The first cell is 240 x 150, horizontal spacing 6, vertical spacing 8: a row adds 248 to the
    // width and a tile in the last row adds 156 to the height.
    QTest::newRow("none: one cell wide, no height") << 0 << 2 << 10 + 248 - 1 << 20 - 1;
    QTest::newRow("none, one column") << 0 << 1 << 10 + 248 - 1 << 20 - 1;
    QTest::newRow("none, no columns allowed") << 0 << -5 << 10 + 248 - 1 << 20 - 1;
    QTest::newRow("one") << 1 << 2 << 10 + 248 - 1 << 20 + 156 - 1;
    QTest::newRow("two side by side") << 2 << 2 << 10 + 248 - 1 << 20 + 312 - 1;
    QTest::newRow("three of two") << 3 << 2 << 10 + 496 - 1 << 20 + 156 - 1;
    QTest::newRow("four of two") << 4 << 2 << 10 + 496 - 1 << 20 + 312 - 1;
    QTest::newRow("five of two") << 5 << 2 << 10 + 744 - 1 << 20 + 156 - 1;
    QTest::newRow("three in one column") << 3 << 1 << 10 + 744 - 1 << 20 + 156 - 1;
    QTest::newRow("four in four columns") << 4 << 4 << 10 + 248 - 1 << 20 + 624 - 1;
    QTest::newRow("three, no columns allowed") << 3 << 0 << 10 + 744 - 1 << 20 + 156 - 1;
}

void TestGridGeometry::rebuilding() {
    QFETCH(const int, tiles);
    QFETCH(const int, maxColumns);
    QFETCH(const int, right);
    QFETCH(const int, bottom);
    const QRect target = grid::rebuilt(QPoint(10, 20), QSize(240, 150), 6, 8, tiles, maxColumns);
    QCOMPARE(target.left(), 10);
    QCOMPARE(target.top(), 20);
    QCOMPARE(target.right(), right);
    QCOMPARE(target.bottom(), bottom);
}

int main(int argc, char** argv) {
    return runTest<TestGridGeometry>(argc, argv);
}

#include "test_grid_geometry.moc"
