#include "Keyboard.h"
#include "FlexLabel.h"
#include "KeypadTable.h"
#include "LetterButton.h"
#include "TestEnvironment.h"

#include <QAccessible>
#include <QAction>
#include <QMouseEvent>
#include <QSignalSpy>
#include <QToolButton>

namespace {

/// A palette with what it emits and hands for it.
struct Pad {
    Pad() { palette.show(); }

    LetterButton* key(const char* name) const {
        return palette.findChild<LetterButton*>(QString::fromLatin1(name));
    }
    QToolButton* toggle(const char* name) const {
        return palette.findChild<QToolButton*>(QString::fromLatin1(name));
    }
    void clickTogglesTo(unsigned state) const {
        const auto set = [this](const char* name, bool down) {
            if (toggle(name)->isChecked() != down) {
                QTest::mouseClick(toggle(name), Qt::LeftButton);
            }
        };
        set("shiftKey", state & 1U);
        set("ctrlKey", state & 2U);
    }
    QList<unsigned short> takeCodes() {
        QList<unsigned short> taken;
        for (const auto& arguments : std::as_const(codes)) {
            taken.append(arguments.at(0).value<unsigned short>());
        }
        codes.clear();
        return taken;
    }

    Keyboard palette;
    QSignalSpy codes{&palette, qOverload<unsigned short>(&Keyboard::keyPressed)};
};

using Codes = QList<unsigned short>;

} // namespace

/// What the palette's keys send and show, for every key and state.
class KeyboardTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(console); }
    void sendsAndShows_data();
    void sendsAndShows();
    void hasNoOtherKeys();
    void sendsWhenPressedNotWhenReleased();
    void sendsOnceForEachPressOfADoubleClick();
    void sendsForTheRightButtonButNotTheMiddle();
    void sendsOnceAPressWithBothButtons();
    void sendsWhenWorkedWithoutAMouse();
    void rightButtonOpensNoMenu();
    void togglesStayDown();
    void mirrorsTheComputerKeyboard_data();
    void mirrorsTheComputerKeyboard();
    void sameStateDoesNotRelabel();
    void clickedToggleRelabels();
    void labelListMayBeShort();
    void speaksCrypticLabels_data();
    void speaksCrypticLabels();
    void blocksCanBeHidden_data();
    void blocksCanBeHidden();
    void everyControlHasAName();
    void arrowsCarryImageAndText_data();
    void arrowsCarryImageAndText();
};

void KeyboardTest::sendsAndShows_data() {
    QTest::addColumn<const KeypadRow*>("row");
    QTest::addColumn<unsigned>("state");
    static constexpr const char* kStates[] = {"normal", "Shift", "Ctrl", "Ctrl+Shift"};
    for (const KeypadRow& row : keypadTable()) {
        for (unsigned state = 0; state < 4; ++state) {
            QTest::addRow("%s %s", row.key, kStates[state]) << &row << state;
        }
    }
}

void KeyboardTest::sendsAndShows() {
    QFETCH(const KeypadRow*, row);
    QFETCH(unsigned, state);
    Pad pad;
    LetterButton* const key = pad.key(row->key);
    QVERIFY(key);
    pad.clickTogglesTo(state);
    QCOMPARE(key->text(), QString::fromLatin1(row->labels[state]));
    QTest::mouseClick(key, Qt::LeftButton);
    QCOMPARE(pad.takeCodes(), Codes{row->codes[state]});
}

void KeyboardTest::hasNoOtherKeys() {
    const Pad pad;
    QCOMPARE(pad.palette.findChildren<LetterButton*>().size(), qsizetype(keypadTable().size()));
}

void KeyboardTest::sendsWhenPressedNotWhenReleased() {
    Pad pad;
    QTest::mousePress(pad.key("k_a"), Qt::LeftButton);
    QCOMPARE(pad.takeCodes(), Codes{97});
    QTest::mouseRelease(pad.key("k_a"), Qt::LeftButton);
    QCOMPARE(pad.takeCodes(), Codes{});
}

void KeyboardTest::sendsOnceForEachPressOfADoubleClick() {
    Pad pad;
    LetterButton* const key = pad.key("k_l");
    QTest::mouseClick(key, Qt::LeftButton);
    // The second press of a double click arrives as an event of its own kind.
    const QPointF middle = key->rect().center();
    QMouseEvent second(QEvent::MouseButtonDblClick, middle, key->mapToGlobal(middle),
                       Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(key, &second);
    QTest::mouseRelease(key, Qt::LeftButton);
    QCOMPARE(pad.takeCodes(), (Codes{108, 108}));
}

void KeyboardTest::sendsForTheRightButtonButNotTheMiddle() {
    Pad pad;
    QTest::mouseClick(pad.key("k_escape"), Qt::RightButton);
    QCOMPARE(pad.takeCodes(), Codes{27});
    QTest::mouseClick(pad.key("k_escape"), Qt::MiddleButton);
    QCOMPARE(pad.takeCodes(), Codes{});
}

void KeyboardTest::sendsOnceAPressWithBothButtons() {
    Pad pad;
    QToolButton* const key = pad.key("k_escape");
    QTest::mousePress(key, Qt::LeftButton);
    QTest::mousePress(key, Qt::RightButton);
    QTest::mouseRelease(key, Qt::RightButton);
    QTest::mouseRelease(key, Qt::LeftButton);
    QCOMPARE(pad.takeCodes(), (Codes{27, 27}));
}

void KeyboardTest::sendsWhenWorkedWithoutAMouse() {
    Pad pad;
    pad.key("k_f3")->click();
    QCOMPARE(pad.takeCodes(), Codes{0x6200});
    auto* const spoken = QAccessible::queryAccessibleInterface(pad.key("k_enter"));
    QVERIFY(spoken && spoken->actionInterface());
    spoken->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QTRY_COMPARE(pad.codes.size(), 1);
    QCOMPARE(pad.takeCodes(), Codes{13});
}

void KeyboardTest::rightButtonOpensNoMenu() {
    const Pad pad;
    for (const QToolButton* key : pad.palette.findChildren<LetterButton*>()) {
        QCOMPARE(key->contextMenuPolicy(), Qt::PreventContextMenu);
    }
}

void KeyboardTest::togglesStayDown() {
    Pad pad;
    QTest::mouseClick(pad.toggle("shiftKey"), Qt::LeftButton);
    QTest::mouseClick(pad.key("k_a"), Qt::LeftButton);
    QTest::mouseClick(pad.key("k_b"), Qt::LeftButton);
    QVERIFY(pad.toggle("shiftKey")->isChecked());
    QTest::mouseClick(pad.toggle("shiftKey"), Qt::LeftButton);
    QTest::mouseClick(pad.key("k_c"), Qt::LeftButton);
    QCOMPARE(pad.takeCodes(), (Codes{65, 66, 99}));
}

void KeyboardTest::mirrorsTheComputerKeyboard_data() {
    QTest::addColumn<bool>("shift");
    QTest::addColumn<bool>("ctrl");
    QTest::addColumn<QString>("label");
    QTest::addColumn<unsigned short>("code");
    QTest::newRow("neither") << false << false << "2" << static_cast<unsigned short>(50);
    QTest::newRow("Shift") << true << false << "@" << static_cast<unsigned short>(64);
    QTest::newRow("Ctrl") << false << true << "@" << static_cast<unsigned short>(64);
    QTest::newRow("both") << true << true << " 0" << static_cast<unsigned short>(0);
}

void KeyboardTest::mirrorsTheComputerKeyboard() {
    QFETCH(bool, shift);
    QFETCH(bool, ctrl);
    for (unsigned before = 0; before < 4; ++before) {
        Pad pad;
        pad.clickTogglesTo(before);
        pad.palette.showModState(shift, ctrl);
        QCOMPARE(pad.toggle("shiftKey")->isChecked(), shift);
        QCOMPARE(pad.toggle("ctrlKey")->isChecked(), ctrl);
        QTEST(pad.key("k_2")->text(), "label");
        QTest::mouseClick(pad.key("k_2"), Qt::LeftButton);
        QFETCH(unsigned short, code);
        QCOMPARE(pad.takeCodes(), Codes{code});
    }
}

void KeyboardTest::sameStateDoesNotRelabel() {
    for (unsigned state = 0; state < 4; ++state) {
        const Pad pad;
        pad.clickTogglesTo(state);
        pad.key("k_a")->setText(QStringLiteral("touched"));
        auto& palette = const_cast<Keyboard&>(pad.palette);
        palette.showModState(state & 1U, state & 2U);
        QCOMPARE(pad.key("k_a")->text(), QStringLiteral("touched"));
        palette.showModState(!(state & 1U), state & 2U);
        QVERIFY(pad.key("k_a")->text() != QStringLiteral("touched"));
    }
}

void KeyboardTest::clickedToggleRelabels() {
    const Pad pad;
    for (const char* name : {"shiftKey", "ctrlKey"}) {
        for (int click = 0; click < 2; ++click) {
            pad.key("k_7")->setText(QStringLiteral("touched"));
            QTest::mouseClick(pad.toggle(name), Qt::LeftButton);
            QVERIFY(pad.key("k_7")->text() != QStringLiteral("touched"));
        }
    }
}

void KeyboardTest::labelListMayBeShort() {
    FlexLabel key;
    key.setCodes({1, 2, 3, 4});
    key.setLabels({QStringLiteral("one"), QStringLiteral("two")});
    key.relabel(0);
    QCOMPARE(key.text(), QStringLiteral("one"));
    key.relabel(1);
    key.relabel(2);
    QCOMPARE(key.text(), QStringLiteral("two"));
    key.setLabels({});
    key.relabel(0);
    QCOMPARE(key.text(), QStringLiteral("two"));
}

void KeyboardTest::speaksCrypticLabels_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<unsigned>("state");
    QTest::addColumn<QString>("spoken");
    QTest::newRow("letter") << "k_a" << 0U << "a";
    QTest::newRow("ampersand once") << "k_7" << 1U << "&";
    QTest::newRow("space") << "k_space" << 0U << "space";
    QTest::newRow("control code") << "k_m" << 2U << "Control code 0d hexadecimal";
    QTest::newRow("null") << "k_2" << 3U << "Control code 00 hexadecimal";
    QTest::newRow("words") << "k_escape" << 2U << "HALT";
    QTest::newRow("arrow") << "leftArrowKey" << 3U << "Left arrow, text";
}

void KeyboardTest::speaksCrypticLabels() {
    QFETCH(QString, key);
    QFETCH(unsigned, state);
    const Pad pad;
    pad.clickTogglesTo(state);
    QTEST(pad.key(key.toLatin1().constData())->accessibleName(), "spoken");
}

void KeyboardTest::blocksCanBeHidden_data() {
    QTest::addColumn<QString>("block");
    QTest::addColumn<QString>("action");
    QTest::newRow("cursor keys") << "navKeys"
                                 << "actionNavKeys";
    QTest::newRow("function keys") << "fctKeys"
                                   << "actionFctKeys";
}

void KeyboardTest::blocksCanBeHidden() {
    QFETCH(QString, block);
    QFETCH(QString, action);
    Pad pad;
    const auto show = [&pad, &block](bool shown) {
        block == QStringLiteral("navKeys") ? pad.palette.showNavKeys(shown)
                                           : pad.palette.showFctKeys(shown);
    };
    const auto* const keys = pad.palette.findChild<QWidget*>(block);
    auto* const entry = pad.palette.findChild<QAction*>(action);
    QVERIFY(pad.palette.actions().contains(entry));
    QVERIFY(keys->isVisible() && entry->isChecked());
    const QSize whole = pad.palette.size();
    show(false);
    QVERIFY(!keys->isVisible() && !entry->isChecked());
    // The window gives back the room.
    QVERIFY(pad.palette.width() < whole.width() || pad.palette.height() < whole.height());
    show(true);
    QVERIFY(keys->isVisible() && entry->isChecked());
    QCOMPARE(pad.palette.size(), whole);
    entry->trigger();
    QVERIFY(!keys->isVisible());
    entry->trigger();
    QVERIFY(keys->isVisible());
}

void KeyboardTest::everyControlHasAName() {
    for (unsigned state = 0; state < 4; ++state) {
        const Pad pad;
        pad.clickTogglesTo(state);
        for (const QWidget* control : pad.palette.findChildren<QAbstractButton*>()) {
            QVERIFY2(!control->accessibleName().trimmed().isEmpty(),
                     qPrintable(control->objectName()));
        }
    }
}

void KeyboardTest::arrowsCarryImageAndText_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("image");
    QTest::newRow("left") << "leftArrowKey"
                          << ":/buttons/images/LeftArrow32.png";
    QTest::newRow("right") << "rightArrowKey"
                           << ":/buttons/images/RightArrow32.png";
    QTest::newRow("up") << "upArrowKey"
                        << ":/buttons/images/UpArrow32.png";
    QTest::newRow("down") << "dnArrowKey"
                          << ":/buttons/images/DnArrow32.png";
}

void KeyboardTest::arrowsCarryImageAndText() {
    QFETCH(QString, key);
    QFETCH(QString, image);
    const Pad pad;
    const LetterButton* const arrow = pad.key(key.toLatin1().constData());
    QCOMPARE(arrow->toolButtonStyle(), Qt::ToolButtonTextUnderIcon);
    QCOMPARE(arrow->icon().pixmap(QSize(32, 32), 1.0).toImage(),
             QIcon(image).pixmap(QSize(32, 32), 1.0).toImage());
    QVERIFY(!QIcon(image).pixmap(QSize(32, 32)).isNull());
}

int main(int argc, char** argv) {
    return runTest<KeyboardTest>(argc, argv);
}

#include "KeyboardTest.moc"
