#include "Keyboard.h"
#include "KeypadTable.h"
#include "Operator.h"
#include "RawInstrument.h"
#include "TestEnvironment.h"

#include <QAction>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QSettings>
#include <QSignalSpy>
#include <QTimer>
#include <QToolBar>
#include <QWindow>

#include <memory>

namespace {

/// A frame around a "KEYS" packet, up to the code.
const QByteArray kKeysFrame = "3c443e"
                              "0000000a"
                              "00000000"
                              "4b455953";

constexpr int kPatience = 60000;

} // namespace

/// The keypad palette in the window, from the click to the bytes on the wire.
class TestGroupWindowKeypad : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void action();
    void isMadeOnce();
    void everyKeyReachesTheInstrument_data();
    void everyKeyReachesTheInstrument();
    void typedInThePaletteReachesTheInstrument_data();
    void typedInThePaletteReachesTheInstrument();
    void modifiersAreMirrored();
    void aMenuLeavesTheKeysOfThePaletteAsTheyAre();
    void modifiersTypedInThePaletteAreMirrored();
    void shortcutsWorkInThePalette();
    void withoutPaletteModifiersDoNoHarm();
    void closingTheWindowEndsTheProgram();

private:
    /// Not isActiveWindow(): that is true of the palette while the window is active.
    static bool hasKeyboard(const QWidget* shown) {
        return QGuiApplication::focusWindow() == shown->windowHandle();
    }
    GroupWindow& window() const { return m_person->window(); }
    /// Connects the first tile to the instrument and clicks its frame red.
    void connectFirstTile() {
        m_person->connectTo(m_instrument->address(), 0);
        QTRY_VERIFY_WITH_TIMEOUT(m_instrument->isConnected() && m_person->tile(0).IsConnected(),
                                 kPatience);
        m_person->clickName(0);
    }
    Keyboard* palette() const { return window().findChild<Keyboard*>(); }
    QToolButton* key(const char* name) const {
        return palette()->findChild<QToolButton*>(QString::fromLatin1(name));
    }
    QAction* keyboardAction() const {
        for (QAction* candidate : window().findChildren<QAction*>())
            if (candidate->text() == QStringLiteral("Keyboard"))
                return candidate;
        return nullptr;
    }
    void clickTogglesTo(unsigned state) const {
        if (key("shiftKey")->isChecked() != bool(state & 1U))
            QTest::mouseClick(key("shiftKey"), Qt::LeftButton);
        if (key("ctrlKey")->isChecked() != bool(state & 2U))
            QTest::mouseClick(key("ctrlKey"), Qt::LeftButton);
    }

    std::unique_ptr<RawInstrument> m_instrument;
    std::unique_ptr<Operator> m_person;
};

void TestGroupWindowKeypad::initTestCase() {
    Q_INIT_RESOURCE(group);
    Q_INIT_RESOURCE(console);
}

void TestGroupWindowKeypad::init() {
    QSettings(QStringLiteral("VESTRA"), QStringLiteral("group7100")).clear();
    m_instrument = std::make_unique<RawInstrument>();
    m_person = std::make_unique<Operator>();
}

void TestGroupWindowKeypad::cleanup() {
    m_person.reset();
    m_instrument.reset();
}

void TestGroupWindowKeypad::action() {
    QVERIFY(!palette());
    const QAction* const keyboard = keyboardAction();
    QVERIFY(keyboard);
    QCOMPARE(keyboard->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_K));
    QCOMPARE(keyboard->statusTip(), QStringLiteral("Show the keyboard palette"));
    QVERIFY(!keyboard->icon().pixmap(32).isNull());
    QVERIFY(window().findChild<QToolBar*>()->actions().contains(keyboard));
}

void TestGroupWindowKeypad::isMadeOnce() {
    m_person->trigger(QStringLiteral("Keyboard"));
    QVERIFY(palette()->isVisible());
    QCOMPARE(palette()->parentWidget(), &window());
    window().activateWindow();
    QTRY_VERIFY(hasKeyboard(&window()));
    // Asked for when it is there already, it gets the keyboard.
    m_person->trigger(QStringLiteral("Keyboard"));
    QTRY_VERIFY(hasKeyboard(palette()));
    palette()->close();
    m_person->trigger(QStringLiteral("Keyboard"));
    QVERIFY(palette()->isVisible());
    QCOMPARE(window().findChildren<Keyboard*>().size(), 1);
    QSignalSpy codes(&window(), &GroupWindow::keyPressed);
    QTest::mouseClick(key("k_a"), Qt::LeftButton);
    QCOMPARE(codes.size(), 1);
}

void TestGroupWindowKeypad::everyKeyReachesTheInstrument_data() {
    QTest::addColumn<unsigned>("state");
    QTest::newRow("normal") << 0U;
    QTest::newRow("Shift") << 1U;
    QTest::newRow("Ctrl") << 2U;
    QTest::newRow("Ctrl+Shift") << 3U;
}

void TestGroupWindowKeypad::everyKeyReachesTheInstrument() {
    QFETCH(const unsigned, state);
    connectFirstTile();
    m_person->trigger(QStringLiteral("Keyboard"));
    clickTogglesTo(state);
    for (const KeypadRow& row : keypadTable()) {
        m_instrument->clear();
        QTest::mouseClick(key(row.key), Qt::LeftButton);
        const QByteArray code = QByteArray::number(row.codes[state], 16).rightJustified(4, '0');
        QTRY_COMPARE_WITH_TIMEOUT(m_instrument->received().toHex(), kKeysFrame + code, kPatience);
    }
}

void TestGroupWindowKeypad::typedInThePaletteReachesTheInstrument_data() {
    QTest::addColumn<Qt::Key>("typed");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::addColumn<QByteArray>("code");
    const Qt::KeyboardModifiers none;
    QTest::newRow("letter") << Qt::Key_X << none << QByteArray("0078");
    QTest::newRow("space") << Qt::Key_Space << none << QByteArray("0020");
    QTest::newRow("return") << Qt::Key_Return << none << QByteArray("000d");
    QTest::newRow("escape") << Qt::Key_Escape << none << QByteArray("001b");
    QTest::newRow("left") << Qt::Key_Left << none << QByteArray("2500");
    QTest::newRow("function key with Meta")
        << Qt::Key_F2 << Qt::KeyboardModifiers(Qt::MetaModifier) << QByteArray("6102");
}

void TestGroupWindowKeypad::typedInThePaletteReachesTheInstrument() {
    QFETCH(const Qt::Key, typed);
    QFETCH(const Qt::KeyboardModifiers, modifiers);
    QFETCH(const QByteArray, code);
    connectFirstTile();
    m_person->trigger(QStringLiteral("Keyboard"));
    QTest::keyClick(palette()->focusWidget(), typed, modifiers);
    QTRY_COMPARE_WITH_TIMEOUT(m_instrument->received().toHex(), kKeysFrame + code, kPatience);
}

void TestGroupWindowKeypad::modifiersAreMirrored() {
    m_person->trigger(QStringLiteral("Keyboard"));
    const auto shows = [this](bool shift, bool ctrl, const char* label) {
        return key("shiftKey")->isChecked() == shift && key("ctrlKey")->isChecked() == ctrl &&
               key("k_2")->text() == QLatin1String(label);
    };
    const auto type = [this](QEvent::Type action, Qt::Key typed, Qt::KeyboardModifiers modifiers) {
        QKeyEvent event(action, typed, modifiers);
        QCoreApplication::sendEvent(&window(), &event);
    };
    QVERIFY(shows(false, false, "2"));
    type(QEvent::KeyPress, Qt::Key_Shift, {});
    QVERIFY(shows(true, false, "@"));
    type(QEvent::KeyPress, Qt::Key_Meta, Qt::ShiftModifier);
    QVERIFY(shows(true, true, " 0"));
    type(QEvent::KeyRelease, Qt::Key_Shift, Qt::ShiftModifier | Qt::MetaModifier);
    QVERIFY(shows(false, true, "@"));
    type(QEvent::KeyRelease, Qt::Key_Meta, Qt::MetaModifier);
    QVERIFY(shows(false, false, "2"));
}

void TestGroupWindowKeypad::aMenuLeavesTheKeysOfThePaletteAsTheyAre() {
    // Without a keyboard the system believes that held which the last key typed was typed with.
    QTest::keyClick(window().windowHandle(), Qt::Key_F12);
    m_person->trigger(QStringLiteral("Keyboard"));
    key("shiftKey")->click();
    QVERIFY(key("shiftKey")->isChecked());
    auto* const file = window().menuBar()->actions().first()->menu();
    const QSignalSpy closed(file, &QMenu::aboutToHide);
    file->popup(window().pos());
    file->close();
    QCOMPARE(closed.size(), 1);
    // What a menu leaves to do is done when the event loop comes to it.
    QCoreApplication::sendPostedEvents();
    QVERIFY(key("shiftKey")->isChecked());
    QCOMPARE(key("k_2")->text(), QStringLiteral("@"));
}

void TestGroupWindowKeypad::modifiersTypedInThePaletteAreMirrored() {
    m_person->trigger(QStringLiteral("Keyboard"));
    QTest::keyPress(palette(), Qt::Key_Shift);
    QVERIFY(key("shiftKey")->isChecked());
    QCOMPARE(key("k_a")->text(), QStringLiteral("A"));
    QTest::keyRelease(palette(), Qt::Key_Shift);
    QVERIFY(!key("shiftKey")->isChecked());
}

void TestGroupWindowKeypad::shortcutsWorkInThePalette() {
    m_person->trigger(QStringLiteral("Keyboard"));
    palette()->takeKeyboard();
    QTRY_VERIFY(hasKeyboard(palette()));
    QSignalSpy asked(keyboardAction(), &QAction::triggered);
    QSignalSpy codes(&window(), &GroupWindow::keyPressed);
    QTest::keyClick(palette()->windowHandle(), Qt::Key_K, Qt::ControlModifier);
    QCOMPARE(asked.size(), 1);
    QCOMPARE(codes.size(), 0);
}

void TestGroupWindowKeypad::withoutPaletteModifiersDoNoHarm() {
    QTest::keyPress(&window(), Qt::Key_Shift);
    QVERIFY(!palette());
    QTest::keyRelease(&window(), Qt::Key_Shift);
}

void TestGroupWindowKeypad::closingTheWindowEndsTheProgram() {
    m_person->trigger(QStringLiteral("Keyboard"));
    // In a loop as in the real program: only there the last window's end counts.
    QTimer::singleShot(0, &window(), &QWidget::close);
    QTimer::singleShot(kPatience, qApp, [] { QCoreApplication::exit(1); });
    QCOMPARE(QCoreApplication::exec(), 0);
}

int main(int argc, char** argv) {
    return runTest<TestGroupWindowKeypad>(argc, argv);
}

#include "test_group_window_keypad.moc"
