#include "NearestKey.h"
#include "TestEnvironment.h"

/// Which key an arrow leads to.
class NearestKeyTest : public QObject {
    Q_OBJECT

private slots:
    void leads_data();
    void leads();
    void aloneLeadsNowhere();
};

namespace {

/// Two staggered rows and a tall key at their right end:
///
///     0000 1111 2222 555
///       3333 4444    555
QList<QRect> keypad() {
    return {{0, 0, 40, 30},   {50, 0, 40, 30},  {100, 0, 40, 30},
            {20, 40, 40, 30}, {70, 40, 40, 30}, {150, 0, 30, 70}};
}

} // namespace

void NearestKeyTest::leads_data() {
    QTest::addColumn<qsizetype>("from");
    QTest::addColumn<Qt::ArrowType>("direction");
    QTest::addColumn<qsizetype>("to");
    const auto row = [](const char* name, qsizetype from, Qt::ArrowType direction, qsizetype to) {
        QTest::newRow(name) << from << direction << to;
    };
    row("right in the row", 0, Qt::RightArrow, 1);
    row("left in the row", 2, Qt::LeftArrow, 1);
    row("down to the key whose middle is nearest", 1, Qt::DownArrow, 4);
    row("up again", 4, Qt::UpArrow, 1);
    row("down where only one is below", 0, Qt::DownArrow, 3);
    row("right to the tall key from above", 2, Qt::RightArrow, 5);
    row("right to the tall key from below", 4, Qt::RightArrow, 5);
    row("past a gap rather than up", 4, Qt::LeftArrow, 3);
    row("left end", 0, Qt::LeftArrow, 0);
    row("right end", 5, Qt::RightArrow, 5);
    row("top", 1, Qt::UpArrow, 1);
    row("bottom", 3, Qt::DownArrow, 3);
}

void NearestKeyTest::leads() {
    QFETCH(qsizetype, from);
    QFETCH(Qt::ArrowType, direction);
    QTEST(nearestKey(keypad(), from, direction), "to");
}

void NearestKeyTest::aloneLeadsNowhere() {
    for (const auto direction : {Qt::LeftArrow, Qt::RightArrow, Qt::UpArrow, Qt::DownArrow}) {
        QCOMPARE(nearestKey({{5, 5, 10, 10}}, 0, direction), qsizetype(0));
    }
}

int main(int argc, char** argv) {
    return runTest<NearestKeyTest>(argc, argv);
}

#include "NearestKeyTest.moc"
