#include "Frame.h"
#include "HelpLinks.h"
#include "LCD7100.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "TestEnvironment.h"
#include "TileMenu.h"
#include "WindowUnderTest.h"

#include <QMenuBar>
#include <QPointer>
#include <QSettings>
#include <QSignalSpy>
#include <QToolButton>

namespace {

constexpr int patience = 20000;

/// What the menu offers now; a line is a separator.
QStringList entriesOf(TileMenu& menu) {
    emit menu.aboutToShow();
    emit menu.aboutToHide();
    QStringList entries;
    for (const QAction* action : menu.actions())
        entries += action->isSeparator() ? QStringLiteral("-") : action->text();
    return entries;
}

} // namespace

/// What an operator without a mouse does with tiles, by the menu and by its keys.
class TestTileMenu : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        newsSource.clear();
    }
    void init();
    void cleanup() { m_window.reset(); }
    void standsBetweenTheOthers();
    void entries();
    void namesOfInstrumentsAreNoMarkup_data();
    void namesOfInstrumentsAreNoMarkup();
    void keysGoFromTileToTile();
    void aKeySwitchesTheFrame();
    void itsKeysAreNoKeysOfInstruments();
    void theRingMarksTheTile();
    void aTileIsChosenByItsNumber();
    void buttonsOfTheTile();
    void aNewConnectionIsTheOneToWorkWith();
    void theTileMayGo();
    void noTiles();
    void theMenuOfTheScreen_data();
    void theMenuOfTheScreen();
    void entriesTellTheStatusBar();
    void menuBarByKey();

private:
    TileMenu& menu() const { return *m_window->widget->findChild<TileMenu*>(); }
    ConnectionWidget* tile(int index) const { return m_window->tiles()[index]; }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) const {
        QTest::keyClick(m_window->widget.get(), Qt::Key(key), modifiers);
    }
    void choose(const QString& text) const {
        emit menu().aboutToShow();
        emit menu().aboutToHide();
        for (QAction* action : menu().actions())
            if (action->text() == text)
                return action->trigger();
        QFAIL(qPrintable(text));
    }

    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
    std::unique_ptr<Window> m_window;
};

void TestTileMenu::init() {
    m_store.clear();
    m_store.setValue("group/count", 3);
    m_window = std::make_unique<Window>();
    m_window->widget->show();
    m_window->widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window->widget.get(), patience));
}

void TestTileMenu::standsBetweenTheOthers() {
    QStringList menus;
    for (const QAction* action : m_window->widget->menuBar()->actions())
        menus += action->text();
    // No letter of its own: Alt with a letter is typed for the instruments.
    QCOMPARE(menus, (QStringList{QStringLiteral("&File"), QStringLiteral("Tiles"),
                                 QStringLiteral("&Help")}));
}

void TestTileMenu::entries() {
    const auto* send = m_window->action(QStringLiteral("Send keys to this tile"));
    emit menu().aboutToShow();
    QVERIFY(!send->isEnabled());
    emit menu().aboutToHide();
    Window::connectTile(tile(1));
    tile(1)->setSendState(true);
    const QStringList tiles{QStringLiteral("-"),
                            QStringLiteral("&1 Empty tile (not connected, receives no keys)"),
                            QStringLiteral("&2 unit (connected, receives keys)"),
                            QStringLiteral("&3 Empty tile (not connected, receives no keys)")};
    const QStringList ways{QStringLiteral("Next tile"), QStringLiteral("Previous tile"),
                           QStringLiteral("-"), QStringLiteral("Send keys to this tile"),
                           QStringLiteral("Menu of this screen")};
    const QStringList broadcasts{QStringLiteral("-"), QStringLiteral("Open kbd comm to all"),
                                 QStringLiteral("Close kbd comm to all")};
    const QStringList offline{QStringLiteral("Connect"), QStringLiteral("Remove this tile")};
    // Twice: nothing of the last time is left.
    for (int i = 0; i < 2; ++i)
        QCOMPARE(entriesOf(menu()), ways + offline + broadcasts + tiles);
    press(Qt::Key_F6);
    QCOMPARE(entriesOf(menu()),
             ways + QStringList{QStringLiteral("Disconnect")} + broadcasts + tiles);
    QVERIFY(m_window->action(QStringLiteral("Send keys to this tile"))->isChecked());
}

void TestTileMenu::namesOfInstrumentsAreNoMarkup_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("shown");
    QTest::newRow("ampersand") << "a&b"
                               << "a&&b";
    QTest::newRow("tab and line feed") << "a\tb\nc"
                                       << "a b c";
    QTest::newRow("place markers") << "%1%2%3"
                                   << "%1%2%3";
    QTest::newRow("too long") << QString(100000, u'x') << QString();
}

void TestTileMenu::namesOfInstrumentsAreNoMarkup() {
    QFETCH(const QString, name);
    QFETCH(const QString, shown);
    tile(0)->connectEther({}, name, new FakeLink, "192.0.2.1", 0, 7100);
    const QString entry = entriesOf(menu()).at(11);
    QVERIFY2(entry.startsWith(QStringLiteral("&1 ")), qPrintable(entry));
    if (!shown.isEmpty())
        QCOMPARE(entry, QStringLiteral("&1 %1 (not connected, receives no keys)").arg(shown));
    QVERIFY(entry.size() < 200);
}

void TestTileMenu::keysGoFromTileToTile() {
    QCOMPARE(menu().current(), tile(0));
    for (const int expected : {1, 2, 0, 1}) {
        press(Qt::Key_F6);
        QCOMPARE(menu().current(), tile(expected));
        QCOMPARE(QApplication::focusWidget(), tile(expected)->findChild<LCD7100*>());
    }
    for (const int expected : {0, 2, 1}) {
        press(Qt::Key_F6, Qt::ShiftModifier);
        QCOMPARE(menu().current(), tile(expected));
    }
    // The same after the menu has been open.
    entriesOf(menu());
    press(Qt::Key_F6);
    QCOMPARE(menu().current(), tile(2));
    // A click on a screen chooses as well.
    QTest::mouseClick(tile(0)->findChild<LCD7100*>(), Qt::LeftButton);
    QCOMPARE(menu().current(), tile(0));
    // And one beside a connected screen.
    Window::connectTile(tile(1));
    QTest::mouseClick(tile(1)->findChild<QLabel*>("nameLabel"), Qt::LeftButton);
    QCOMPARE(menu().current(), tile(1));
}

void TestTileMenu::aKeySwitchesTheFrame() {
    FakeLink* link = Window::connectTile(tile(1));
    // Without a connection nothing is to be switched, and nothing kept for later.
    press(Qt::Key_F8);
    tile(0)->_connect(new FakeLink);
    QVERIFY(isRaised(*tile(0)));
    entriesOf(menu());
    press(Qt::Key_F6);
    press(Qt::Key_F8);
    QVERIFY(isRed(*tile(1)));
    press(Qt::Key_X);
    QCOMPARE(link->sent.size(), std::size_t{1});
    press(Qt::Key_F8);
    QVERIFY(isRaised(*tile(1)));
    press(Qt::Key_X);
    QCOMPARE(link->sent.size(), std::size_t{1});
    QVERIFY(!m_window->action(QStringLiteral("Send keys to this tile"))->autoRepeat());
}

void TestTileMenu::itsKeysAreNoKeysOfInstruments() {
    QSignalSpy codes(m_window->widget.get(), &GroupWindow::keyPressed);
    const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
    for (const auto modifiers : {Qt::KeyboardModifiers(), shift})
        for (const auto key : {Qt::Key_F6, Qt::Key_F7, Qt::Key_F8, Qt::Key_F9, Qt::Key_F10}) {
            press(key, modifiers);
            while (QWidget* popup = QApplication::activePopupWidget())
                popup->close();
        }
    QVERIFY(codes.empty());
    press(Qt::Key_T, Qt::AltModifier);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(codes.size(), 1);
}

void TestTileMenu::theRingMarksTheTile() {
    const auto strip = [](ConnectionWidget* tile) {
        return tile->grab(tile->findChild<QLabel*>("nameLabel")->geometry()).toImage();
    };
    QCOMPARE(QApplication::focusWidget(), tile(0)->findChild<LCD7100*>());
    const QImage with = strip(tile(0));
    press(Qt::Key_F6);
    QVERIFY(strip(tile(0)) != with);
    QCOMPARE(strip(tile(1)), with);
}

void TestTileMenu::aTileIsChosenByItsNumber() {
    choose(QStringLiteral("&3 Empty tile (not connected, receives no keys)"));
    QCOMPARE(menu().current(), tile(2));
    QStringList checked;
    entriesOf(menu());
    for (const QAction* action : menu().actions())
        if (action->isChecked())
            checked += action->text();
    QCOMPARE(checked,
             QStringList(QStringLiteral("&3 Empty tile (not connected, receives no keys)")));
}

void TestTileMenu::buttonsOfTheTile() {
    FakeLink* link = Window::connectTile(tile(0));
    choose(QStringLiteral("Disconnect"));
    QCOMPARE(link->calls, QStringList(QStringLiteral("Disconnect")));
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) { shown.reject(); });
    choose(QStringLiteral("Connect"));
    QVERIFY(dialog.answered());
    choose(QStringLiteral("Remove this tile"));
    QCOMPARE(m_window->tiles().size(), 2);
}

void TestTileMenu::aNewConnectionIsTheOneToWorkWith() {
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) { shown.accept(); });
    m_window->action(QStringLiteral("Add connection"))->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(menu().current(), tile(3));
}

void TestTileMenu::theTileMayGo() {
    const QPointer<ConnectionWidget> last = tile(2);
    press(Qt::Key_F6, Qt::ShiftModifier);
    QCOMPARE(menu().current(), last.data());
    m_window->widget->removalRequest(last);
    QCOMPARE(menu().current(), tile(0));
    QTRY_VERIFY_WITH_TIMEOUT(last.isNull(), patience);
    QCOMPARE(menu().current(), tile(0));
    press(Qt::Key_F6);
    QCOMPARE(menu().current(), tile(1));
}

void TestTileMenu::noTiles() {
    for (auto* each : m_window->tiles())
        m_window->widget->removalRequest(each);
    QVERIFY(!menu().current());
    for (const auto key : {Qt::Key_F6, Qt::Key_F8})
        press(key);
    press(Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(!QApplication::activePopupWidget());
    QCOMPARE(entriesOf(menu()).size(), 5);
}

void TestTileMenu::theMenuOfTheScreen_data() {
    QTest::addColumn<bool>("byShortcut");
    QTest::newRow("Shift+F10") << true;
    QTest::newRow("Menu key, with the focus nowhere") << false;
}

void TestTileMenu::theMenuOfTheScreen() {
    QFETCH(const bool, byShortcut);
    press(Qt::Key_F6);
    QCursor::setPos(1, 1);
    if (byShortcut) {
        press(Qt::Key_F10, Qt::ShiftModifier);
    } else {
        QContextMenuEvent request(QContextMenuEvent::Keyboard, {}, {});
        QApplication::sendEvent(m_window->widget.get(), &request);
    }
    const auto* screen = tile(1)->findChild<LCD7100*>();
    auto* shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(shown);
    QCOMPARE(shown->actions().constFirst()->text(), QStringLiteral("Edit Color..."));
    QCOMPARE(shown->pos(), screen->mapToGlobal(screen->rect().center()));
    shown->close();
}

void TestTileMenu::entriesTellTheStatusBar() {
    for (const QAction* top : m_window->widget->menuBar()->actions())
        for (const QAction* action : top->menu()->actions())
            if (!action->isSeparator())
                QVERIFY2(!action->statusTip().isEmpty(), qPrintable(action->text()));
    tile(0)->contextMenu({});
    auto* shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(shown);
    shown->setActiveAction(shown->actions().constLast());
    QCOMPARE(m_window->widget->statusBar()->currentMessage(),
             QStringLiteral("Send the keys to no instrument"));
    shown->close();
}

void TestTileMenu::menuBarByKey() {
    press(Qt::Key_F10);
    const auto* shown = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    QVERIFY(shown);
    QCOMPARE(shown->title(), QStringLiteral("&File"));
    while (QWidget* popup = QApplication::activePopupWidget())
        popup->close();
}

int main(int argc, char** argv) {
    return runTest<TestTileMenu>(argc, argv);
}

#include "test_tile_menu.moc"
