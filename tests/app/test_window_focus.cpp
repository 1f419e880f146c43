#include "ChatWindow.h"
#include "Keyboard.h"
#include "Operator.h"
#include "RawInstrument.h"
#include "TestEnvironment.h"
#include "TileMenu.h"

#include <QComboBox>
#include <QProcess>
#include <QSettings>
#include <QStatusBar>
#include <QTextEdit>
#include <QWindow>

#include <algorithm>
#include <memory>

namespace {

constexpr int kPatience = 60000;

const QByteArray kChatFrame = QByteArray::fromHex("3c443e0000000d0000000043484154") + "hello";

/// The key codes in what an instrument received, in hexadecimal.
QStringList codesIn(const QByteArray& received) {
    constexpr qsizetype kFrameSize = 17;
    QStringList codes;
    for (qsizetype at = 0; at + kFrameSize <= received.size(); at += kFrameSize)
        codes.append(QString::fromLatin1(received.mid(at + kFrameSize - 2, 2).toHex()));
    return codes;
}

} // namespace

/// Where the keyboard goes when windows come and go, on a real display under a window manager and
/// with keys and clicks that arrive from the display.
class TestWindowFocus : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void paletteComesUpWithoutTheKeyboard();
    void clicksInThePaletteLoseNoKeys();
    void paletteIsWorkedByKeyboard();
    void chatComesUpWithoutTheKeyboard_data();
    void chatComesUpWithoutTheKeyboard();
    void keysTypedWhileChatArrivesAreNotLost();
    void draftGoesOnWhileChatArrives();
    void keysGoOnAfterAMenuIsLeft();
    void tilesAreWorkedByKeyboard();
    void aScreensMenuIsWorkedByKeyboard();

private:
    GroupWindow& window() const { return m_person->window(); }
    Keyboard* palette() const { return window().findChild<Keyboard*>(); }
    ChatWindow* chat() const { return window().findChild<ChatWindow*>(); }

    /// Not isActiveWindow(): that is true of the palette while the window is active.
    static bool hasKeyboard(const QWidget* shown) {
        return QGuiApplication::focusWindow() == shown->windowHandle();
    }
    static bool getsKeyboard(const QWidget* shown) {
        return QTest::qWaitFor([shown] { return hasKeyboard(shown); }, kPatience);
    }
    /// Runs xdotool while the windows go on living.
    static bool hands(const QStringList& arguments) {
        QProcess xdotool;
        xdotool.start(QStringLiteral("xdotool"), arguments);
        return QTest::qWaitFor([&xdotool] { return xdotool.state() == QProcess::NotRunning; },
                               kPatience) &&
               xdotool.exitCode() == 0;
    }
    static bool type(const QString& text) {
        return hands(
            {QStringLiteral("type"), QStringLiteral("--delay"), QStringLiteral("5"), text});
    }
    static bool press(const QString& key) { return hands({QStringLiteral("key"), key}); }
    static bool click(const QWidget* target) {
        const QPoint middle = target->mapToGlobal(target->rect().center());
        return hands({QStringLiteral("mousemove"), QString::number(middle.x()),
                      QString::number(middle.y()), QStringLiteral("click"), QStringLiteral("1")});
    }
    bool instrumentGets(const QStringList& codes) {
        const bool complete = QTest::qWaitFor(
            [&] { return codesIn(m_instrument->received()).size() >= codes.size(); }, kPatience);
        const QStringList got = codesIn(m_instrument->received());
        m_instrument->clear();
        if (!complete || got != codes)
            qWarning() << got << "instead of" << codes;
        return complete && got == codes;
    }
    /// As the operator does, whom a window manager obeys; a program's wish it may refuse.
    void giveKeyboardToWindow() {
        QVERIFY(hands({QStringLiteral("windowactivate"), QString::number(window().winId())}));
        QVERIFY(getsKeyboard(&window()));
    }
    void openPalette() {
        QVERIFY(press(QStringLiteral("ctrl+k")));
        QTRY_VERIFY_WITH_TIMEOUT(palette() && palette()->isVisible(), kPatience);
        QVERIFY(QTest::qWaitForWindowExposed(palette(), kPatience));
    }

    std::unique_ptr<RawInstrument> m_instrument;
    std::unique_ptr<Operator> m_person;
};

void TestWindowFocus::initTestCase() {
    Q_INIT_RESOURCE(group);
    Q_INIT_RESOURCE(console);
    QCOMPARE(QGuiApplication::platformName(), QStringLiteral("xcb"));
}

void TestWindowFocus::init() {
    QSettings(QStringLiteral("VESTRA"), QStringLiteral("group7100")).clear();
    m_instrument = std::make_unique<RawInstrument>();
    m_person = std::make_unique<Operator>();
    QVERIFY(QTest::qWaitForWindowExposed(&window(), kPatience));
    m_person->connectTo(m_instrument->address(), 0);
    QTRY_VERIFY_WITH_TIMEOUT(m_instrument->isConnected() && m_person->tile(0).IsConnected(),
                             kPatience);
    m_person->clickName(0);
    giveKeyboardToWindow();
}

void TestWindowFocus::cleanup() {
    m_person.reset();
    m_instrument.reset();
}

void TestWindowFocus::paletteComesUpWithoutTheKeyboard() {
    openPalette();
    QVERIFY(type(QStringLiteral("a")));
    QVERIFY(press(QStringLiteral("Tab")));
    QVERIFY(instrumentGets({QStringLiteral("0061"), QStringLiteral("0009")}));
    QVERIFY(hasKeyboard(&window()));
}

void TestWindowFocus::clicksInThePaletteLoseNoKeys() {
    openPalette();
    const auto* const key = palette()->findChild<QWidget*>(QStringLiteral("k_labels"));
    for (int round = 0; round < 3; ++round) {
        QVERIFY(click(key));
        QVERIFY(type(QStringLiteral("x y")));
        QVERIFY(instrumentGets({QStringLiteral("1200"), QStringLiteral("0078"),
                                QStringLiteral("0020"), QStringLiteral("0079")}));
        QVERIFY(getsKeyboard(&window()));
    }
}

void TestWindowFocus::paletteIsWorkedByKeyboard() {
    openPalette();
    QVERIFY(press(QStringLiteral("ctrl+k")));
    QVERIFY(getsKeyboard(palette()));
    QVERIFY(press(QStringLiteral("Tab")));
    QVERIFY(press(QStringLiteral("space")));
    QVERIFY(press(QStringLiteral("Right")));
    QVERIFY(press(QStringLiteral("Return")));
    QVERIFY(type(QStringLiteral("z ")));
    QVERIFY(instrumentGets({QStringLiteral("1200"), QStringLiteral("6000"), QStringLiteral("007a"),
                            QStringLiteral("0020")}));
}

void TestWindowFocus::chatComesUpWithoutTheKeyboard_data() {
    QTest::addColumn<QString>("before");
    QTest::newRow("never opened") << "";
    QTest::newRow("closed") << "closed";
    QTest::newRow("behind") << "behind";
}

void TestWindowFocus::chatComesUpWithoutTheKeyboard() {
    QFETCH(const QString, before);
    if (!before.isEmpty()) {
        QVERIFY(press(QStringLiteral("ctrl+c")));
        QTRY_VERIFY_WITH_TIMEOUT(chat() && hasKeyboard(chat()), kPatience);
        if (before == QStringLiteral("closed"))
            chat()->close();
        giveKeyboardToWindow();
    }
    m_instrument->send(kChatFrame);
    QTRY_VERIFY_WITH_TIMEOUT(chat() && chat()->isVisible() && !chat()->isMinimized(), kPatience);
    QVERIFY(QTest::qWaitForWindowExposed(chat(), kPatience));
    QVERIFY(getsKeyboard(&window()));
    QVERIFY(type(QStringLiteral("x")));
    QVERIFY(instrumentGets({QStringLiteral("0078")}));
    QVERIFY(hasKeyboard(&window()));
}

void TestWindowFocus::keysGoOnAfterAMenuIsLeft() {
    QVERIFY(press(QStringLiteral("alt+f")));
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget(), kPatience);
    // From one menu to the next: the bar has the keyboard as long as one is open.
    QVERIFY(press(QStringLiteral("Right")));
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget(), kPatience);
    QVERIFY(press(QStringLiteral("Escape")));
    QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activePopupWidget(), kPatience);
    QVERIFY(type(QStringLiteral("a b")));
    QVERIFY(!QApplication::activePopupWidget());
    QVERIFY(
        instrumentGets({QStringLiteral("0061"), QStringLiteral("0020"), QStringLiteral("0062")}));
}

void TestWindowFocus::tilesAreWorkedByKeyboard() {
    window().addEmptyConnection(true);
    const auto* const tiles = window().findChild<TileMenu*>();
    QVERIFY(press(QStringLiteral("F6")));
    QTRY_COMPARE_WITH_TIMEOUT(tiles->current(), &m_person->tile(1), kPatience);
    // The frame says who gets the keys, wherever the focus is.
    QVERIFY(type(QStringLiteral("a")));
    QVERIFY(instrumentGets({QStringLiteral("0061")}));

    QVERIFY(press(QStringLiteral("F10")));
    QVERIFY(press(QStringLiteral("Right")));
    QTRY_COMPARE_WITH_TIMEOUT(QApplication::activePopupWidget(), tiles, kPatience);
    QVERIFY(press(QStringLiteral("1")));
    QTRY_COMPARE_WITH_TIMEOUT(tiles->current(), &m_person->tile(0), kPatience);
    QTRY_VERIFY_WITH_TIMEOUT(m_person->display(0).hasFocus(), kPatience);
    QVERIFY(press(QStringLiteral("F8")));
    QTRY_VERIFY_WITH_TIMEOUT(!m_person->tile(0).receivesKeys(), kPatience);
    QVERIFY(type(QStringLiteral("bc")));
    QVERIFY(press(QStringLiteral("F8")));
    QTRY_VERIFY_WITH_TIMEOUT(m_person->tile(0).receivesKeys(), kPatience);
    QVERIFY(type(QStringLiteral("d")));
    QVERIFY(instrumentGets({QStringLiteral("0064")}));
}

void TestWindowFocus::aScreensMenuIsWorkedByKeyboard() {
    const auto isEmpty = [](const QLabel* label) { return label->text().isEmpty(); };
    const auto labels = window().statusBar()->findChildren<QLabel*>();
    for (const char* key : {"shift+F10", "Menu"}) {
        QVERIFY(press(QLatin1String(key)));
        QTRY_VERIFY_WITH_TIMEOUT(QApplication::activePopupWidget(), kPatience);
        QVERIFY(press(QStringLiteral("Escape")));
        QTRY_VERIFY_WITH_TIMEOUT(!QApplication::activePopupWidget(), kPatience);
        // Shift was let go while the menu had the keyboard.
        QTRY_VERIFY_WITH_TIMEOUT(std::ranges::all_of(labels, isEmpty), kPatience);
        QVERIFY(type(QStringLiteral("a b")));
        QVERIFY(instrumentGets(
            {QStringLiteral("0061"), QStringLiteral("0020"), QStringLiteral("0062")}));
    }
}

void TestWindowFocus::keysTypedWhileChatArrivesAreNotLost() {
    const QString typed = QStringLiteral("abcdefghijklmnopqrstuvwxyz");
    QStringList codes;
    for (const QChar letter : typed)
        codes.append(QStringLiteral("%1").arg(letter.unicode(), 4, 16, QLatin1Char('0')));
    const auto connection =
        connect(&window(), &GroupWindow::keyPressed, this, [this](unsigned short code) {
            if (code == 'c' || code == 'k')
                m_instrument->send(kChatFrame);
        });
    QVERIFY(type(typed));
    QVERIFY(instrumentGets(codes));
    disconnect(connection);
    QTRY_VERIFY_WITH_TIMEOUT(chat() && chat()->isVisible(), kPatience);
    QCOMPARE(chat()->findChild<QComboBox*>()->currentText(), QString());
}

void TestWindowFocus::draftGoesOnWhileChatArrives() {
    QVERIFY(press(QStringLiteral("ctrl+c")));
    QTRY_VERIFY_WITH_TIMEOUT(chat() && hasKeyboard(chat()), kPatience);
    QVERIFY(type(QStringLiteral("half a ")));
    m_instrument->send(kChatFrame);
    QTRY_VERIFY_WITH_TIMEOUT(
        chat()->findChild<QTextEdit*>()->toPlainText().endsWith(QStringLiteral("hello")),
        kPatience);
    QVERIFY(type(QStringLiteral("line")));
    QTRY_COMPARE_WITH_TIMEOUT(chat()->findChild<QComboBox*>()->currentText(),
                              QStringLiteral("half a line"), kPatience);
    QVERIFY(m_instrument->received().isEmpty());
}

int main(int argc, char** argv) {
    return runTest<TestWindowFocus>(argc, argv);
}

#include "test_window_focus.moc"
