#include "Frame.h"
#include "HelpLinks.h"
#include "LCD7100.h"
#include "TestEnvironment.h"
#include "WindowUnderTest.h"

#include <QAbstractButton>
#include <QSettings>
#include <QSignalSpy>

namespace {

constexpr int patience = 20000;

} // namespace

class TestGroupWindowKeys : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        // A window that starts asks for news: here there is nobody to ask.
        newsSource.clear();
    }
    void init() { m_store.clear(); }
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

private:
    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestGroupWindowKeys::typedKeys_data() {
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

void TestGroupWindowKeys::typedKeys() {
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

void TestGroupWindowKeys::keysReachTheWindowFromAScreen() {
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

void TestGroupWindowKeys::noButtonTakesAKey() {
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

void TestGroupWindowKeys::keysAfterTheScreenInFocusIsRemoved() {
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

void TestGroupWindowKeys::heldKeyRepeats() {
    const Window window;
    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    for (const bool again : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_X, Qt::NoModifier, QStringLiteral("x"), again);
        QApplication::sendEvent(window.widget.get(), &press);
        QVERIFY(press.isAccepted());
    }
    QCOMPARE(codes.size(), 3);
}

void TestGroupWindowKeys::modifierKeys() {
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

void TestGroupWindowKeys::aModifierIsNotHeldPastTheWindow() {
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

void TestGroupWindowKeys::keypadKeys() {
    const Window window;
    QSignalSpy codes(window.widget.get(), &GroupWindow::keyPressed);
    window.widget->nonAsciiKey(0x01, 0x41);
    window.widget->nonAsciiKey(0xFF, 0xFF);
    QCOMPARE(codes.size(), 2);
    QCOMPARE(codes[0][0].toInt(), 0x0141);
    QCOMPARE(codes[1][0].toInt(), 0xFFFF);
}

void TestGroupWindowKeys::outgoingChatReachesReceivers() {
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

void TestGroupWindowKeys::onlyFramedTilesReceive() {
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

void TestGroupWindowKeys::broadcastsLeaveUnconnectedTilesAlone() {
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

int main(int argc, char** argv) {
    return runTest<TestGroupWindowKeys>(argc, argv);
}

#include "test_group_window_keys.moc"
