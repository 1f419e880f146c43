#include "Keyboard.h"
#include "LetterButton.h"
#include "TestEnvironment.h"

#include <QKeyEvent>
#include <QSignalSpy>
#include <QToolButton>
#include <QWindow>

#include <memory>

namespace {

QString noted(const QKeyEvent& event) {
    return QStringLiteral("%1 %2 %3 %4")
        .arg(event.type() == QEvent::KeyPress ? QStringLiteral("press") : QStringLiteral("release"))
        .arg(event.key(), 0, 16)
        .arg(event.modifiers().toInt(), 0, 16)
        .arg(event.text());
}

/// Stands where the group window stands: writes down what is typed into it.
class Owner : public QWidget {
public:
    QStringList takeTyped() { return std::exchange(m_typed, {}); }
    QStringList takePresses() { return takeTyped().filter(QStringLiteral("press")); }

protected:
    void keyPressEvent(QKeyEvent* event) override { m_typed.append(noted(*event)); }
    void keyReleaseEvent(QKeyEvent* event) override { m_typed.append(noted(*event)); }

private:
    QStringList m_typed;
};

/// Not isActiveWindow(): that is true of a palette while its owner is active.
bool hasKeyboard(const QWidget* window) {
    return QGuiApplication::focusWindow() == window->windowHandle();
}

} // namespace

/// Where typed keys go while the palette is the active window.
class KeypadFocusTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(console); }
    void init();
    void cleanup();
    void staysAboveItsOwner();
    void typedKeysReachTheOwner_data();
    void typedKeysReachTheOwner();
    void activationFocusesNoKey();
    void clickFocusesNoKey();
    void acceptsTheKeyboardOnlyWhenGiven();
    void tabReachesEveryControl();
    void focusedKeyIsPressed_data();
    void focusedKeyIsPressed();
    void heldSpacePressesOnce();
    void focusedToggleIsPressed();
    void arrowsLeadToNeighbours();
    void arrowsSkipHiddenKeys();
    void typingTakesTheFocusOffTheKeys();
    void modifiersLeaveTheFocus();
    void withoutOwnerTypedKeysGoNowhere();

private:
    QToolButton* key(const char* name) const {
        return m_palette->findChild<QToolButton*>(QString::fromLatin1(name));
    }
    void type(int typed, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
              const QString& text = {}) const {
        QWidget* const into = m_palette->focusWidget();
        for (const auto what : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(what, typed, modifiers, text);
            QCoreApplication::sendEvent(into, &event);
        }
    }

    std::unique_ptr<Owner> m_owner;
    Keyboard* m_palette = nullptr;
    std::unique_ptr<QSignalSpy> m_codes;
};

void KeypadFocusTest::init() {
    m_owner = std::make_unique<Owner>();
    m_palette = new Keyboard(m_owner.get());
    m_codes =
        std::make_unique<QSignalSpy>(m_palette, qOverload<unsigned short>(&Keyboard::keyPressed));
    m_owner->show();
    m_palette->show();
    m_palette->takeKeyboard();
    QTRY_VERIFY(hasKeyboard(m_palette));
}

void KeypadFocusTest::cleanup() {
    m_codes.reset();
    m_owner.reset();
}

void KeypadFocusTest::staysAboveItsOwner() {
    QVERIFY(m_palette->isWindow());
    QCOMPARE(m_palette->windowType(), Qt::Tool);
    QCOMPARE(m_palette->windowHandle()->transientParent(), m_owner->windowHandle());
}

void KeypadFocusTest::typedKeysReachTheOwner_data() {
    QTest::addColumn<int>("typed");
    QTest::addColumn<int>("modifiers");
    QTest::addColumn<QString>("text");
    QTest::newRow("letter") << int(Qt::Key_A) << 0 << "a";
    QTest::newRow("capital") << int(Qt::Key_A) << int(Qt::ShiftModifier) << "A";
    QTest::newRow("control code") << int(Qt::Key_C) << int(Qt::ControlModifier) << "\x03";
    QTest::newRow("space") << int(Qt::Key_Space) << 0 << " ";
    QTest::newRow("return") << int(Qt::Key_Return) << 0 << "\r";
    QTest::newRow("enter with Meta") << int(Qt::Key_Enter) << int(Qt::MetaModifier) << "\r";
    QTest::newRow("escape") << int(Qt::Key_Escape) << 0 << "\x1b";
    QTest::newRow("left") << int(Qt::Key_Left) << 0 << "";
    QTest::newRow("down with Shift") << int(Qt::Key_Down) << int(Qt::ShiftModifier) << "";
    QTest::newRow("page up") << int(Qt::Key_PageUp) << 0 << "";
    QTest::newRow("function key") << int(Qt::Key_F3) << 0 << "";
    QTest::newRow("Shift") << int(Qt::Key_Shift) << int(Qt::ShiftModifier) << "";
    QTest::newRow("Meta") << int(Qt::Key_Meta) << int(Qt::MetaModifier) << "";
    QTest::newRow("Tab with Ctrl") << int(Qt::Key_Tab) << int(Qt::ControlModifier) << "\t";
}

void KeypadFocusTest::typedKeysReachTheOwner() {
    QFETCH(int, typed);
    QFETCH(int, modifiers);
    QFETCH(QString, text);
    const Qt::KeyboardModifiers held(modifiers);
    type(typed, held, text);
    QCOMPARE(m_owner->takeTyped(),
             (QStringList{noted(QKeyEvent(QEvent::KeyPress, typed, held, text)),
                          noted(QKeyEvent(QEvent::KeyRelease, typed, held, text))}));
    QCOMPARE(m_codes->size(), 0);
    QCOMPARE(m_palette->focusWidget(), m_palette);
}

void KeypadFocusTest::activationFocusesNoKey() {
    QCOMPARE(QApplication::focusWidget(), m_palette);
    m_owner->activateWindow();
    QTRY_VERIFY(hasKeyboard(m_owner.get()));
    m_palette->takeKeyboard();
    QTRY_VERIFY(hasKeyboard(m_palette));
    QCOMPARE(QApplication::focusWidget(), m_palette);
}

void KeypadFocusTest::clickFocusesNoKey() {
    QTest::mouseClick(key("k_a"), Qt::LeftButton);
    QTest::mouseClick(key("shiftKey"), Qt::LeftButton);
    QCOMPARE(m_palette->focusWidget(), m_palette);
}

void KeypadFocusTest::acceptsTheKeyboardOnlyWhenGiven() {
    const auto accepts = [this] {
        return !m_palette->windowHandle()->flags().testFlag(Qt::WindowDoesNotAcceptFocus);
    };
    QVERIFY(accepts());
    m_owner->activateWindow();
    QTRY_VERIFY(hasKeyboard(m_owner.get()));
    QVERIFY(!accepts());
    m_palette->close();
    m_palette->show();
    QVERIFY(!accepts());
    m_palette->takeKeyboard();
    QTRY_VERIFY(hasKeyboard(m_palette));
    QVERIFY(accepts());
}

void KeypadFocusTest::tabReachesEveryControl() {
    QSet<QWidget*> reached;
    const auto buttons = m_palette->findChildren<QAbstractButton*>();
    for (qsizetype step = 0; step < buttons.size(); ++step) {
        type(Qt::Key_Tab, {}, QStringLiteral("\t"));
        reached.insert(m_palette->focusWidget());
    }
    QCOMPARE(reached, QSet<QWidget*>(buttons.begin(), buttons.end()));
    type(Qt::Key_Tab);
    QCOMPARE(m_palette->focusWidget(), m_palette);
    type(Qt::Key_Backtab, Qt::ShiftModifier);
    QCOMPARE(m_palette->focusWidget(), key("pgdnKey"));
    QVERIFY(m_owner->takePresses().isEmpty());
}

void KeypadFocusTest::focusedKeyIsPressed_data() {
    QTest::addColumn<int>("typed");
    QTest::newRow("Space") << int(Qt::Key_Space);
    QTest::newRow("Return") << int(Qt::Key_Return);
    QTest::newRow("Enter") << int(Qt::Key_Enter);
}

void KeypadFocusTest::focusedKeyIsPressed() {
    QFETCH(int, typed);
    key("k_labels")->setFocus();
    type(typed);
    QCOMPARE(m_codes->size(), 1);
    QCOMPARE(m_codes->at(0).at(0).value<unsigned short>(), 0x1200);
    QCOMPARE(m_palette->focusWidget(), key("k_labels"));
    QVERIFY(m_owner->takePresses().isEmpty());
}

void KeypadFocusTest::heldSpacePressesOnce() {
    key("k_a")->setFocus();
    for (const bool again : {false, true, true}) {
        QKeyEvent press(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "),
                        again);
        QCoreApplication::sendEvent(key("k_a"), &press);
    }
    QTest::keyRelease(key("k_a"), Qt::Key_Space);
    QCOMPARE(m_codes->size(), 1);
    QCOMPARE(m_palette->focusWidget(), key("k_a"));
    QVERIFY(m_owner->takePresses().isEmpty());
}

void KeypadFocusTest::focusedToggleIsPressed() {
    key("ctrlKey")->setFocus();
    type(Qt::Key_Space);
    QVERIFY(key("ctrlKey")->isChecked());
    type(Qt::Key_Return);
    QVERIFY(!key("ctrlKey")->isChecked());
}

void KeypadFocusTest::arrowsLeadToNeighbours() {
    key("k_q")->setFocus();
    const std::pair<int, const char*> steps[] = {
        {Qt::Key_Right, "k_w"},    {Qt::Key_Down, "k_a"},      {Qt::Key_Left, "ctrlKey"},
        {Qt::Key_Left, "ctrlKey"}, {Qt::Key_Down, "shiftKey"}, {Qt::Key_Right, "k_z"},
        {Qt::Key_Down, "k_space"}, {Qt::Key_Down, "k_space"},
    };
    for (const auto& [typed, name] : steps) {
        type(typed);
        QCOMPARE(m_palette->focusWidget()->objectName(), QString::fromLatin1(name));
    }
    QVERIFY(m_owner->takePresses().isEmpty());
}

void KeypadFocusTest::arrowsSkipHiddenKeys() {
    m_palette->showNavKeys(false);
    key("k_delete")->setFocus();
    type(Qt::Key_Right);
    QCOMPARE(m_palette->focusWidget(), key("k_delete"));
    m_palette->showNavKeys(true);
    type(Qt::Key_Right);
    QCOMPARE(m_palette->focusWidget(), key("homeKey"));
}

void KeypadFocusTest::typingTakesTheFocusOffTheKeys() {
    key("k_escape")->setFocus();
    type(Qt::Key_H, {}, QStringLiteral("h"));
    type(Qt::Key_Space, {}, QStringLiteral(" "));
    QCOMPARE(m_owner->takePresses(),
             (QStringList{QStringLiteral("press 48 0 h"), QStringLiteral("press 20 0  ")}));
    QCOMPARE(m_codes->size(), 0);
    QCOMPARE(m_palette->focusWidget(), m_palette);
}

void KeypadFocusTest::modifiersLeaveTheFocus() {
    key("k_escape")->setFocus();
    type(Qt::Key_Shift, Qt::ShiftModifier);
    QCOMPARE(m_palette->focusWidget(), key("k_escape"));
    QCOMPARE(m_owner->takeTyped().size(), 2);
}

void KeypadFocusTest::withoutOwnerTypedKeysGoNowhere() {
    Keyboard alone;
    alone.show();
    QTest::keyClick(&alone, Qt::Key_A);
    QCOMPARE(m_owner->takeTyped(), QStringList());
}

int main(int argc, char** argv) {
    return runTest<KeypadFocusTest>(argc, argv);
}

#include "KeypadFocusTest.moc"
