#include "GroupPrefs.h"
#include "HelpLinks.h"
#include "ModalDialog.h"
#include "TestEnvironment.h"
#include "WindowUnderTest.h"

#include <QPointer>
#include <QSettings>
#include <QSpinBox>
#include <QToolButton>

namespace {

constexpr int patience = 20000;

} // namespace

class TestGroupWindowGrid : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        // A window that starts asks for news: here there is nobody to ask.
        newsSource.clear();
    }
    void init() { m_store.clear(); }
    void storedTilesStandInRows();
    void growing();
    void removingTheOnlyTile();
    void removingATileClosesTheGap();
    void removingAStrangerDoesNothing();
    void removalByTheTilesOwnButton();
    void aMaximizedWindowKeepsItsSize();
    void preferences_data();
    void preferences();

private:
    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestGroupWindowGrid::storedTilesStandInRows() {
    m_store.setValue("group/count", 5);
    m_store.setValue("group/maxcols", 2);
    const Window window;
    QCOMPARE(window.tiles().size(), 5);
    for (int i = 0; i < 5; ++i)
        QCOMPARE(window.tile(i / 2, i % 2), window.tiles()[i]);
    QVERIFY(!window.tile(2, 1));
    for (const auto* tile : window.tiles())
        QVERIFY(!tile->IsConnected());
}

void TestGroupWindowGrid::growing() {
    const Window window;
    window.widget->setGeometry(10, 20, 600, 400);
    window.widget->show();
    const QRect first = window.widget->geometry();
    window.widget->addEmptyConnection(true);
    QCOMPARE(window.widget->geometry(), QRect(10, 20, first.width(), 2 * first.height()));
    window.widget->addEmptyConnection(true);
    QCOMPARE(window.widget->geometry(), QRect(10, 20, 2 * first.width(), 2 * first.height()));
    window.widget->addEmptyConnection(true);
    QCOMPARE(window.widget->geometry(), QRect(10, 20, 2 * first.width(), 2 * first.height()));
    window.widget->addEmptyConnection(false);
    QCOMPARE(window.widget->geometry(), QRect(10, 20, 2 * first.width(), 2 * first.height()));
}

void TestGroupWindowGrid::removingTheOnlyTile() {
    const Window window;
    window.widget->setGeometry(10, 20, 600, 400);
    window.widget->show();
    const QRect cell = window.grid()->cellRect(0, 0);
    QVERIFY(cell.height() > 200);
    window.widget->removalRequest(window.tile(0, 0));
    QCOMPARE(window.grid()->count(), 0);
    QVERIFY(window.tiles().empty());
    QTRY_COMPARE_WITH_TIMEOUT(window.widget->height(), window.widget->minimumSizeHint().height(),
                              patience);
    QCOMPARE(window.widget->width(), cell.width() + window.grid()->verticalSpacing());
    QCOMPARE(window.widget->geometry().topLeft(), QPoint(10, 20));

    window.widget->addEmptyConnection(true);
    const int height = window.widget->height();
    window.widget->addEmptyConnection(true);
    QCOMPARE(window.widget->height(), 2 * height);
}

void TestGroupWindowGrid::removingATileClosesTheGap() {
    m_store.setValue("group/count", 5);
    const Window window;
    window.widget->setGeometry(0, 0, 700, 900);
    window.widget->show();
    const auto before = window.tiles();
    const QSize cell = window.grid()->cellRect(0, 0).size();
    window.widget->removalRequest(before[1]);
    QCOMPARE(window.tile(0, 0), before[0]);
    QCOMPARE(window.tile(0, 1), before[2]);
    QCOMPARE(window.tile(1, 0), before[3]);
    QCOMPARE(window.tile(1, 1), before[4]);
    QVERIFY(!window.tile(2, 0));
    // Two rows of two: the rows give the width, the tiles of the last row the height.
    const QSize target(2 * (cell.width() + window.grid()->verticalSpacing()),
                       2 * (cell.height() + window.grid()->horizontalSpacing()));
    QTRY_COMPARE_WITH_TIMEOUT(window.widget->size(), target, patience);
}

void TestGroupWindowGrid::removingAStrangerDoesNothing() {
    const Window window;
    window.widget->show();
    const QRect geometry = window.widget->geometry();
    ConnectionWidget stranger;
    window.widget->removalRequest(&stranger);
    window.widget->removalRequest(nullptr);
    QCOMPARE(window.tiles().size(), 1);
    QCOMPARE(window.widget->geometry(), geometry);
}

void TestGroupWindowGrid::removalByTheTilesOwnButton() {
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    const QPointer<ConnectionWidget> tile = window.tile(0, 0);
    QTest::mouseClick(tile->findChild<QToolButton*>("killBtn"), Qt::LeftButton);
    QCOMPARE(window.tiles().size(), 1);
    QVERIFY(window.tile(0, 0));
    QTRY_VERIFY_WITH_TIMEOUT(tile.isNull(), patience);
}

void TestGroupWindowGrid::aMaximizedWindowKeepsItsSize() {
    const Window window;
    window.widget->showMaximized();
    QTRY_VERIFY_WITH_TIMEOUT(window.widget->isMaximized(), patience);
    const int height = window.widget->height();
    // A geometry of its own would end the maximized state.
    window.widget->addEmptyConnection(true);
    QVERIFY(window.widget->isMaximized());
    QCOMPARE(window.widget->height(), height);
    window.widget->rebuild();
    window.widget->jj();
    QVERIFY(window.widget->isMaximized());
    QCOMPARE(window.widget->height(), height);
}

void TestGroupWindowGrid::preferences_data() {
    QTest::addColumn<int>("stored");
    QTest::addColumn<int>("shown");
    QTest::addColumn<int>("chosen");
    QTest::addColumn<bool>("accepted");
    QTest::addColumn<int>("columns");

    QTest::newRow("cancelled") << 2 << 2 << 4 << false << 2;
    QTest::newRow("accepted as shown") << 2 << 2 << 2 << true << 2;
    QTest::newRow("one") << 2 << 2 << 1 << true << 1;
    QTest::newRow("four") << 3 << 3 << 4 << true << 4;
    QTest::newRow("stored too high, cancelled") << 7 << 4 << 4 << false << 7;
    QTest::newRow("stored too high, accepted") << 7 << 4 << 4 << true << 4;
    QTest::newRow("stored too low, accepted") << -3 << 1 << 1 << true << 1;
    QTest::newRow("out of range cannot be entered") << 2 << 2 << 9 << true << 4;
}

void TestGroupWindowGrid::preferences() {
    QFETCH(const int, stored);
    QFETCH(const int, shown);
    QFETCH(const int, chosen);
    QFETCH(const bool, accepted);
    QFETCH(const int, columns);
    m_store.setValue("group/maxcols", stored);
    m_store.setValue("group/count", 8);
    const Window window;
    window.widget->show();
    const QRect geometry = window.widget->geometry();
    int wasShown = 0;
    const ModalDialog<GroupPrefs> prefs([&](GroupPrefs& dialog) {
        auto* spinBox = dialog.findChild<QSpinBox*>("spinBox");
        wasShown = spinBox->value();
        spinBox->setValue(chosen);
        accepted ? dialog.accept() : dialog.reject();
    });
    window.action(QStringLiteral("Preferences"))->trigger();
    QVERIFY(prefs.answered());
    QCOMPARE(wasShown, shown);
    const auto tiles = window.tiles();
    for (int i = 0; i < 8; ++i)
        QCOMPARE(window.tile(i / columns, i % columns), tiles[i]);
    if (!accepted)
        QCOMPARE(window.widget->geometry(), geometry);

    // It is only closing that stores the value.
    QCOMPARE(m_store.value("group/maxcols").toInt(), stored);
    QVERIFY(window.widget->close());
    QCOMPARE(m_store.value("group/maxcols").toInt(), columns);
}

int main(int argc, char** argv) {
    return runTest<TestGroupWindowGrid>(argc, argv);
}

#include "test_group_window_grid.moc"
