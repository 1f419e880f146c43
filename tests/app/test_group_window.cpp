#include "ConnectionWidget.h"
#include "FakeLink.h"
#include "Frame.h"
#include "GroupPrefs.h"
#include "GroupWindow.h"
#include "HelpLinks.h"
#include "HttpServer.h"
#include "LCD7100.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "TestEnvironment.h"

#include <QAction>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStatusBar>
#include <QToolBar>
#include <QToolButton>

#include <memory>

namespace {

constexpr int patience = 20000;

const QByteArray defaultColors = QByteArray::fromHex("0000000300ff0000ff"
                                                     "0000000300ffe0e0e0"
                                                     "0000000300ffff0000");
const QByteArray otherColors = QByteArray::fromHex("0000000300ff112233"
                                                   "0000000300ff445566"
                                                   "0000000300ff778899");

/// The window and what a test looks at.
struct Window {
    QGridLayout* grid() const {
        return widget->centralWidget()->findChild<QGridLayout*>("gridLayout");
    }
    ConnectionWidget* tile(int row, int column) const {
        const auto* item = grid()->itemAtPosition(row, column);
        return item ? qobject_cast<ConnectionWidget*>(item->widget()) : nullptr;
    }
    QList<ConnectionWidget*> tiles() const { return widget->findChildren<ConnectionWidget*>(); }
    static FakeLink* connectTile(ConnectionWidget* tile) {
        auto* link = new FakeLink;
        tile->connectEther({}, QStringLiteral("unit"), link, "192.0.2.1", 0, 7100);
        link->open();
        link->calls.clear();
        return link;
    }
    QString modifierText() const {
        const auto* label = widget->statusBar()->findChild<QLabel*>();
        return label ? label->text() : QStringLiteral("no label");
    }
    QAction* action(const QString& text) const {
        for (auto* action : widget->findChildren<QAction*>())
            if (action->text() == text)
                return action;
        return nullptr;
    }

    std::unique_ptr<GroupWindow> widget = std::make_unique<GroupWindow>();
};

} // namespace

class TestGroupWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        // A window that starts asks for news: here there is nobody to ask.
        newsSource.clear();
    }
    void init() { m_store.clear(); }
    void firstStart();
    void identity();
    void menusAndActions();
    void toolBarHoldsAddConnection();
    void aboutBox();
    void newsAreAskedForOnce();
    void storedTilesStandInRows();
    void damagedStore_data();
    void damagedStore();
    void geometryIsRestored();
    void typedKeys_data();
    void typedKeys();
    void keysReachTheWindowFromAScreen();
    void noButtonTakesAKey();
    void keysAfterTheScreenInFocusIsRemoved();
    void heldKeyRepeats();
    void modifierKeys();
    void aModifierIsNotHeldPastTheWindow();
    void keypadKeys();
    void outgoingChatReachesReceivers();
    void onlyFramedTilesReceive();
    void broadcastsLeaveUnconnectedTilesAlone();
    void colorsAndFontSpread();
    void growing();
    void removingTheOnlyTile();
    void removingATileClosesTheGap();
    void removingAStrangerDoesNothing();
    void removalByTheTilesOwnButton();
    void aMaximizedWindowKeepsItsSize();
    void preferences_data();
    void preferences();
    void cancelledNewConnection();
    void newConnectionWithoutAddress();
    void closingWithoutConnection();
    void closingWithAConnection_data();
    void closingWithAConnection();
    void settingsAreWrittenOnClosing();
    void settingsAreNotWrittenBefore();

private:
    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestGroupWindow::firstStart() {
    const Window window;
    QCOMPARE(window.tiles().size(), 1);
    QVERIFY(window.tile(0, 0));
    QVERIFY(!window.tile(0, 0)->IsConnected());
    auto* display = window.tile(0, 0)->findChild<LCD7100*>();
    QCOMPARE(display->getColors(), defaultColors);
    QCOMPARE(display->getFontFamily(), QStringLiteral("Arial"));
    window.widget->show();
    // As asked for, unless the menus, the tile and the bars need more.
    const QSize least = window.widget->minimumSizeHint();
    QCOMPARE(window.widget->size(), QSize(450, 180).expandedTo(least));
    QVERIFY(least.width() < 450);

    // Two columns are allowed.
    window.widget->addEmptyConnection(false);
    window.widget->addEmptyConnection(false);
    QVERIFY(window.tile(0, 1));
    QVERIFY(window.tile(1, 0));
    QVERIFY(!window.tile(0, 2));
}

void TestGroupWindow::identity() {
    const Window window;
    QCOMPARE(QApplication::applicationName(), QStringLiteral("GX7100Group"));
    QCOMPARE(QApplication::applicationVersion(), QStringLiteral("2.1"));
    QCOMPARE(QApplication::organizationName(), QStringLiteral("vestra"));
    QCOMPARE(window.widget->windowTitle(), QStringLiteral("GX7100Group 2.1"));
}

void TestGroupWindow::menusAndActions() {
    const Window window;
    const auto menus = window.widget->menuBar()->actions();
    QCOMPARE(menus.size(), 2);
    QCOMPARE(menus[0]->text(), QStringLiteral("&File"));
    QCOMPARE(menus[0]->menu()->actions().first()->text(), QStringLiteral("Preferences"));
    QCOMPARE(menus[0]->menu()->actions().last()->text(), QStringLiteral("Quit"));
    QCOMPARE(menus[1]->text(), QStringLiteral("&Help"));
    QStringList help;
    for (const QAction* action : menus[1]->menu()->actions())
        if (!action->isSeparator())
            help.append(action->text());
    QCOMPARE(help, (QStringList{QStringLiteral("About"), QStringLiteral("About Qt"),
                                QStringLiteral("User Guide for GX7100Group"),
                                QStringLiteral("GX-7100 Manual, ver 6.2"),
                                QStringLiteral("Visit the VESTRA web site"),
                                QStringLiteral("Check for Software updates"),
                                QStringLiteral("Latest GX-7100 news")}));

    const auto* quit = window.action(QStringLiteral("Quit"));
    QCOMPARE(quit->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    QCOMPARE(quit->statusTip(), QStringLiteral("Exit the application"));
    QVERIFY(quit->icon().isNull());
    const auto* add = window.action(QStringLiteral("Add connection"));
    QCOMPARE(add->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_P));
    QCOMPARE(add->statusTip(), QStringLiteral("Add a connection"));
    QVERIFY(!add->icon().isNull());
}

void TestGroupWindow::toolBarHoldsAddConnection() {
    const Window window;
    const auto* bar = window.widget->findChild<QToolBar*>(QStringLiteral("mainToolBar"));
    QVERIFY(bar);
    QVERIFY(bar->actions().contains(window.action(QStringLiteral("Add connection"))));
    QVERIFY(window.widget->findChild<QStatusBar*>(QStringLiteral("statusBar")));
}

void TestGroupWindow::aboutBox() {
    const Window window;
    QString title;
    QString text;
    const ModalDialog<QMessageBox> box([&](QMessageBox& shown) {
        title = shown.windowTitle();
        text = shown.text();
        shown.accept();
    });
    window.action(QStringLiteral("About"))->trigger();
    QVERIFY(box.answered());
    QCOMPARE(title, QStringLiteral("About GX7100Group"));
    QVERIFY(text.startsWith(QStringLiteral("<h3>GX7100Group 2.1</h3>")));
}

void TestGroupWindow::newsAreAskedForOnce() {
    HttpServer server;
    newsSource = server.url(QStringLiteral("/news"));
    {
        const Window window;
        QTRY_COMPARE_WITH_TIMEOUT(server.requests(), QList<QByteArray>{"/news"}, patience);
    }
    newsSource.clear();
    QCOMPARE(server.requests().size(), 1);
}

void TestGroupWindow::storedTilesStandInRows() {
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

void TestGroupWindow::damagedStore_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<int>("tiles");

    for (const QVariant& value :
         {QVariant(100000), QVariant(-7), QVariant("many"), QVariant(QByteArray("\0\xff", 2)),
          QVariant(QStringList({"1", "2"})), QVariant(QVariantMap{{"a", 1}})})
        for (const char* key :
             {"group/count", "group/maxcols", "group/geometry", "group/colors", "group/font"})
            QTest::addRow("%s %s", key,
                          qPrintable(value.toString() + QLatin1String(value.typeName())))
                << key << value << 1;
    QTest::newRow("no tiles") << "group/count" << QVariant(0) << 0;
}

void TestGroupWindow::damagedStore() {
    QFETCH(const QString, key);
    QFETCH(const QVariant, value);
    QFETCH(const int, tiles);
    m_store.setValue(key, value);
    const Window window;
    window.widget->show();
    QCOMPARE(window.tiles().size(), tiles);
    // Whatever was stored as the number of columns, more tiles find a place.
    for (int i = 0; i < 4; ++i)
        window.widget->addEmptyConnection(true);
    window.widget->rebuild();
    QCOMPARE(window.grid()->count(), tiles + 4);
}

void TestGroupWindow::geometryIsRestored() {
    QRect geometry;
    {
        const Window window;
        window.widget->setGeometry(60, 70, 611, 433);
        window.widget->show();
        geometry = window.widget->geometry();
        QVERIFY(window.widget->close());
    }
    const Window again;
    again.widget->show();
    QCOMPARE(again.widget->geometry(), geometry);
}

void TestGroupWindow::typedKeys_data() {
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<int>("code");

    const Qt::KeyboardModifiers none;
    const Qt::KeyboardModifiers shift(Qt::ShiftModifier);
    const Qt::KeyboardModifiers meta(Qt::MetaModifier);
    QTest::newRow("a") << Qt::Key_A << none << 97;
    QTest::newRow("Return") << Qt::Key_Return << none << 13;
    QTest::newRow("Shift Return") << Qt::Key_Return << shift << 10;
    QTest::newRow("Meta Return") << Qt::Key_Return << meta << 0x0D02;
    QTest::newRow("Shift Meta Enter") << Qt::Key_Enter << (shift | meta) << 0x0D03;
    QTest::newRow("Escape") << Qt::Key_Escape << none << 27;
    QTest::newRow("Backspace") << Qt::Key_Backspace << none << 8;
    QTest::newRow("Meta Backspace") << Qt::Key_Backspace << meta << 0x0802;
    QTest::newRow("F1") << Qt::Key_F1 << none << 0x6000;
    QTest::newRow("Shift F5") << Qt::Key_F5 << shift << 0x6401;
    // Keys that a window usually keeps for itself.
    QTest::newRow("Tab") << Qt::Key_Tab << none << 9;
    QTest::newRow("Space") << Qt::Key_Space << none << 32;
    QTest::newRow("Left") << Qt::Key_Left << none << 0x2500;
    QTest::newRow("Up") << Qt::Key_Up << none << 0x2600;
    QTest::newRow("Page Down") << Qt::Key_PageDown << none << 0x2200;
    QTest::newRow("Home") << Qt::Key_Home << none << 0x2400;
    QTest::newRow("nothing for Insert") << Qt::Key_Insert << none << -1;
    QTest::newRow("nothing for F6") << Qt::Key_F6 << none << -1;
    QTest::newRow("nothing for Alt") << Qt::Key_Alt << none << -1;
}

void TestGroupWindow::typedKeys() {
    QFETCH(const Qt::Key, key);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QFETCH(const int, code);
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    QTest::keyClick(window.widget.get(), key, modifiers);
    QCOMPARE(codes.size(), code < 0 ? 0 : 1);
    if (code >= 0)
        QCOMPARE(codes[0][0].toInt(), code);
}

void TestGroupWindow::keysReachTheWindowFromAScreen() {
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    window.widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.widget.get(), patience));
    auto* screen = window.tile(0, 0)->findChild<LCD7100*>();
    screen->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(screen->hasFocus(), patience);

    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    QTest::keyClick(screen, Qt::Key_Tab);
    QTest::keyClick(screen, Qt::Key_Space);
    QTest::keyClick(screen, Qt::Key_Down);
    QTest::keyClick(screen, 'x');
    QCOMPARE(codes.size(), 4);
    QCOMPARE(codes[0][0].toInt(), 9);
    QCOMPARE(codes[1][0].toInt(), 32);
    QCOMPARE(codes[2][0].toInt(), 0x2800);
    QCOMPARE(codes[3][0].toInt(), 120);
    QVERIFY(screen->hasFocus());
}

void TestGroupWindow::noButtonTakesAKey() {
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    QVERIFY(window.widget->findChildren<QAbstractButton*>().size() >= 5);
    for (const auto* button : window.widget->findChildren<QAbstractButton*>())
        QCOMPARE(button->focusPolicy(), Qt::NoFocus);

    FakeLink* link = Window::connectTile(window.tile(0, 0));
    QTest::mouseClick(window.tile(0, 0)->findChild<QLabel*>("nameLabel"), Qt::LeftButton);
    QTest::keyClick(window.widget.get(), Qt::Key_Space);
    QVERIFY(link->calls.empty());
    QCOMPARE(link->sent.size(), std::size_t{1});
}

void TestGroupWindow::keysAfterTheScreenInFocusIsRemoved() {
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    window.widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.widget.get(), patience));
    auto* screen = window.tile(0, 0)->findChild<LCD7100*>();
    screen->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(screen->hasFocus(), patience);
    window.widget->removalRequest(window.tile(0, 0));

    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    QTest::keyClick(window.widget->windowHandle(), Qt::Key_Tab);
    QTest::keyClick(window.widget->windowHandle(), Qt::Key_B);
    QCOMPARE(codes.size(), 2);
    QCOMPARE(codes[1][0].toInt(), 98);
}

void TestGroupWindow::heldKeyRepeats() {
    const Window window;
    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    for (const bool again : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"), again);
        QApplication::sendEvent(window.widget.get(), &press);
        QVERIFY(press.isAccepted());
    }
    QCOMPARE(codes.size(), 3);
}

void TestGroupWindow::modifierKeys() {
    const Window window;
    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    QSignalSpy states(window.widget.get(), &GroupWindow::shiftCtrlStateChange);
    const auto type = [&window](QEvent::Type action, Qt::Key key, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(action, key, modifiers);
        QApplication::sendEvent(window.widget.get(), &event);
    };
    const auto stateIs = [&states](bool shift, bool ctrl) {
        const auto state = states.takeLast();
        return state[0].toBool() == shift && state[1].toBool() == ctrl;
    };
    QCOMPARE(window.modifierText(), QString());
    type(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier);
    QCOMPARE(window.modifierText(), QStringLiteral("Shift "));
    QVERIFY(stateIs(true, false));
    type(QEvent::KeyPress, Qt::Key_Meta, Qt::ShiftModifier | Qt::MetaModifier);
    QCOMPARE(window.modifierText(), QStringLiteral("Shift  Ctrl"));
    QVERIFY(stateIs(true, true));
    type(QEvent::KeyRelease, Qt::Key_Shift, Qt::MetaModifier);
    QCOMPARE(window.modifierText(), QStringLiteral(" Ctrl"));
    QVERIFY(stateIs(false, true));
    type(QEvent::KeyRelease, Qt::Key_Meta, Qt::NoModifier);
    QCOMPARE(window.modifierText(), QString());
    QVERIFY(stateIs(false, false));
    // Other keys, Control among them, leave the state alone.
    type(QEvent::KeyPress, Qt::Key_Control, Qt::ControlModifier);
    type(QEvent::KeyPress, Qt::Key_A, Qt::ShiftModifier);
    QCOMPARE(window.modifierText(), QString());
    QVERIFY(states.empty());
    QCOMPARE(codes.size(), 1);
}

void TestGroupWindow::aModifierIsNotHeldPastTheWindow() {
    const Window window;
    window.widget->show();
    window.widget->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window.widget.get()));
    QTest::keyPress(window.widget.get(), Qt::Key_Shift, Qt::ShiftModifier);
    QCOMPARE(window.modifierText(), QStringLiteral("Shift "));
    // The key is let go while this window has the keyboard, so nobody tells the first.
    QWidget other;
    other.show();
    other.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&other));
    QTRY_COMPARE_WITH_TIMEOUT(window.modifierText(), QString(), 60000);
}

void TestGroupWindow::keypadKeys() {
    const Window window;
    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    window.widget->nonAsciiKey(0x01, 0x41);
    window.widget->nonAsciiKey(0xFF, 0xFF);
    QCOMPARE(codes.size(), 2);
    QCOMPARE(codes[0][0].toInt(), 0x0141);
    QCOMPARE(codes[1][0].toInt(), 0xFFFF);
}

void TestGroupWindow::outgoingChatReachesReceivers() {
    m_store.setValue("group/count", 2);
    const Window window;
    FakeLink* framed = Window::connectTile(window.tile(0, 0));
    FakeLink* other = Window::connectTile(window.tile(0, 1));
    window.tile(0, 0)->setSendState(true);
    window.widget->outgoingChat(QStringLiteral("hello"));
    QCOMPARE(framed->sent.size(), std::size_t{1});
    QCOMPARE(QByteArray::fromStdString(framed->sent[0]),
             QByteArray::fromHex("3c443e0000000d00000000") + "CHAThello");
    QVERIFY(other->sent.empty());
}

void TestGroupWindow::onlyFramedTilesReceive() {
    m_store.setValue("group/count", 3);
    const Window window;
    window.widget->show();
    FakeLink* framed = Window::connectTile(window.tile(0, 0));
    FakeLink* other = Window::connectTile(window.tile(0, 1));
    QTest::mouseClick(window.tile(0, 0)->findChild<QLabel*>("nameLabel"), Qt::LeftButton);
    QVERIFY(isRed(*window.tile(0, 0)));
    QTest::keyClick(window.widget.get(), Qt::Key_F3);
    QCOMPARE(framed->sent.size(), std::size_t{1});
    QCOMPARE(QByteArray::fromStdString(framed->sent[0]),
             QByteArray::fromHex("3c443e0000000a00000000") + "KEYS" + QByteArray::fromHex("6200"));
    QVERIFY(other->sent.empty());
}

void TestGroupWindow::broadcastsLeaveUnconnectedTilesAlone() {
    m_store.setValue("group/count", 3);
    const Window window;
    FakeLink* link = Window::connectTile(window.tile(0, 1));
    auto* closed = new FakeLink;
    window.tile(1, 0)->_connect(closed);
    window.tile(0, 0)->startCommToAll();
    QVERIFY(isRaised(*window.tile(0, 0)));
    QVERIFY(isRed(*window.tile(0, 1)));
    QVERIFY(isRaised(*window.tile(1, 0)));
    // Nothing has been kept for later.
    closed->open();
    QVERIFY(isRaised(*window.tile(1, 0)));
    window.widget->nonAsciiKey(1, 2);
    QCOMPARE(link->sent.size(), std::size_t{1});
    QVERIFY(closed->sent.empty());

    window.tile(0, 0)->stopCommToAll();
    QVERIFY(isRaised(*window.tile(0, 1)));
    window.widget->nonAsciiKey(1, 2);
    QCOMPARE(link->sent.size(), std::size_t{1});
}

void TestGroupWindow::colorsAndFontSpread() {
    m_store.setValue("group/count", 2);
    const Window window;
    emit window.tile(0, 0)->colorChanged(otherColors);
    emit window.tile(0, 0)->fontFamilyChanged(QStringLiteral("Courier"));
    window.widget->addEmptyConnection(true);
    for (auto* tile : window.tiles()) {
        QCOMPARE(tile->findChild<LCD7100*>()->getColors(), otherColors);
        QCOMPARE(tile->findChild<LCD7100*>()->getFontFamily(), QStringLiteral("Courier"));
    }
    QVERIFY(window.widget->close());
    QCOMPARE(m_store.value("group/colors").toByteArray(), otherColors);
    QCOMPARE(m_store.value("group/font").toString(), QStringLiteral("Courier"));
}

void TestGroupWindow::growing() {
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

void TestGroupWindow::removingTheOnlyTile() {
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

void TestGroupWindow::removingATileClosesTheGap() {
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

void TestGroupWindow::removingAStrangerDoesNothing() {
    const Window window;
    window.widget->show();
    const QRect geometry = window.widget->geometry();
    ConnectionWidget stranger;
    window.widget->removalRequest(&stranger);
    window.widget->removalRequest(nullptr);
    QCOMPARE(window.tiles().size(), 1);
    QCOMPARE(window.widget->geometry(), geometry);
}

void TestGroupWindow::removalByTheTilesOwnButton() {
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    const QPointer<ConnectionWidget> tile = window.tile(0, 0);
    QTest::mouseClick(tile->findChild<QToolButton*>("killBtn"), Qt::LeftButton);
    QCOMPARE(window.tiles().size(), 1);
    QVERIFY(window.tile(0, 0));
    QTRY_VERIFY_WITH_TIMEOUT(tile.isNull(), patience);
}

void TestGroupWindow::aMaximizedWindowKeepsItsSize() {
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

void TestGroupWindow::preferences_data() {
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

void TestGroupWindow::preferences() {
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

void TestGroupWindow::cancelledNewConnection() {
    const Window window;
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) {
        QCOMPARE(shown.windowTitle(), QStringLiteral("New Connection"));
        shown.reject();
    });
    window.action(QStringLiteral("Add connection"))->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(window.tiles().size(), 1);
}

void TestGroupWindow::newConnectionWithoutAddress() {
    const Window window;
    window.widget->show();
    const int height = window.widget->height();
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) { shown.accept(); });
    window.action(QStringLiteral("Add connection"))->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(window.tiles().size(), 2);
    QVERIFY(!window.tile(0, 1)->IsConnected());
    QCOMPARE(window.tile(0, 1)->findChild<QLabel*>("nameLabel")->text(),
             QStringLiteral("TextLabel"));
    QCOMPARE(window.widget->height(), 2 * height);
}

void TestGroupWindow::closingWithoutConnection() {
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    FakeLink* link = Window::connectTile(window.tile(0, 0));
    link->close();
    const ModalDialog<QMessageBox> box([](QMessageBox& unwanted) { unwanted.reject(); });
    window.action(QStringLiteral("Quit"))->trigger();
    QVERIFY(!box.answered());
    QVERIFY(!window.widget->isVisible());
}

void TestGroupWindow::closingWithAConnection_data() {
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<bool>("closed");

    QTest::newRow("yes") << QMessageBox::Yes << true;
    QTest::newRow("cancel") << QMessageBox::Cancel << false;
    QTest::newRow("dismissed") << QMessageBox::NoButton << false;
}

void TestGroupWindow::closingWithAConnection() {
    QFETCH(const QMessageBox::StandardButton, answer);
    QFETCH(const bool, closed);
    m_store.setValue("group/count", 3);
    const Window window;
    window.widget->show();
    FakeLink* link = Window::connectTile(window.tile(0, 1));
    FakeLink* second = Window::connectTile(window.tile(1, 0));
    auto* lost = Window::connectTile(window.tile(0, 0));
    lost->close();
    m_store.clear();
    const ModalDialog<QMessageBox> box([answer](QMessageBox& shown) {
        QCOMPARE(shown.text(), QStringLiteral("Disconnect and quit?"));
        QCOMPARE(shown.standardButtons(), QMessageBox::Yes | QMessageBox::Cancel);
        QCOMPARE(shown.defaultButton(), shown.button(QMessageBox::Yes));
        QCOMPARE(shown.icon(), QMessageBox::Question);
        if (answer == QMessageBox::NoButton)
            shown.reject();
        else
            shown.button(answer)->click();
    });
    QCOMPARE(window.widget->close(), closed);
    QVERIFY(box.answered());
    QCOMPARE(window.widget->isVisible(), !closed);
    const QStringList calls = closed ? QStringList(QStringLiteral("Disconnect")) : QStringList();
    QCOMPARE(link->calls, calls);
    QCOMPARE(second->calls, calls);
    QVERIFY(lost->calls.empty());
    QCOMPARE(window.tile(0, 1)->IsConnected(), !closed);
    QCOMPARE(m_store.contains("group/count"), closed);
}

void TestGroupWindow::settingsAreWrittenOnClosing() {
    const Window window;
    window.widget->show();
    window.widget->addEmptyConnection(true);
    window.widget->addEmptyConnection(true);
    QVERIFY(window.widget->close());
    m_store.sync();
    QCOMPARE(m_store.value("group/count").toInt(), 3);
    QCOMPARE(m_store.value("group/maxcols").toInt(), 2);
    QCOMPARE(m_store.value("group/colors").toByteArray(), defaultColors);
    QCOMPARE(m_store.value("group/font").toString(), QStringLiteral("Arial"));
    QVERIFY(!m_store.value("group/geometry").toByteArray().isEmpty());
    QVERIFY(QFile::exists(m_store.fileName()));
}

void TestGroupWindow::settingsAreNotWrittenBefore() {
    {
        const Window window;
        window.widget->show();
        window.widget->addEmptyConnection(true);
        emit window.tile(0, 0)->colorChanged(otherColors);
    }
    QVERIFY(m_store.allKeys().empty());
}

int main(int argc, char** argv) {
    return runTest<TestGroupWindow>(argc, argv);
}

#include "test_group_window.moc"
