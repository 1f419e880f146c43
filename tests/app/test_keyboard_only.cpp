#include "CaptureControl.h"
#include "CaptureInfo.h"
#include "ChatWindow.h"
#include "ColorEditWidget.h"
#include "GroupPrefs.h"
#include "LCD7100.h"
#include "LCDColorPicker.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "TestEnvironment.h"

#include <QCheckBox>
#include <QColorDialog>
#include <QComboBox>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSettings>
#include <QSignalSpy>
#include <QTextEdit>

namespace {

constexpr int patience = 60000;

/// Presses keys in a window, whatever has the focus there, as a person without a mouse does.
class Hands {
public:
    explicit Hands(QWidget& window) : m_window(window) {
        window.show();
        window.activateWindow();
        m_ready = QTest::qWaitForWindowActive(&window, patience);
    }
    bool ready() const { return m_ready; }

    void press(Qt::Key key, int times = 1) {
        for (int i = 0; i < times; ++i)
            QTest::keyClick(m_window.windowHandle(), key);
    }
    void type(const QString& text) { QTest::keyClicks(m_window.focusWidget(), text); }
    QString focused() const {
        return m_window.focusWidget() ? m_window.focusWidget()->objectName() : QString();
    }
    /// Goes on to the control of this name; whether it is there.
    bool tabTo(const QString& name) {
        constexpr int mostControls = 30;
        for (int i = 0; i < mostControls && focused() != name; ++i)
            press(Qt::Key_Tab);
        return focused() == name;
    }

private:
    QWidget& m_window;
    bool m_ready = false;
};

} // namespace

/// Each dialog, done from beginning to end without a mouse.
class TestKeyboardOnly : public QObject {
    Q_OBJECT

private slots:
    void preferences_data();
    void preferences();
    void networkConnection();
    void serialConnection();
    void capture();
    void colors();
    void chat();

private:
    QSettings m_settings{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestKeyboardOnly::preferences_data() {
    QTest::addColumn<Qt::Key>("last");
    QTest::addColumn<QDialog::DialogCode>("result");
    QTest::newRow("Return") << Qt::Key_Return << QDialog::Accepted;
    QTest::newRow("Escape") << Qt::Key_Escape << QDialog::Rejected;
}

void TestKeyboardOnly::preferences() {
    QFETCH(const Qt::Key, last);
    QFETCH(const QDialog::DialogCode, result);
    GroupPrefs dialog;
    dialog.setMaxCols(2);
    Hands hands(dialog);
    QVERIFY(hands.ready());
    QCOMPARE(hands.focused(), QStringLiteral("spinBox"));
    hands.press(Qt::Key_Up);
    hands.press(last);
    QVERIFY(!dialog.isVisible());
    QCOMPARE(dialog.result(), int(result));
    QCOMPARE(dialog.maxCols(), 3);
}

void TestKeyboardOnly::networkConnection() {
    NewConnection dialog;
    Hands hands(dialog);
    QVERIFY(hands.ready());
    QCOMPARE(hands.focused(), QStringLiteral("nameEdit"));
    hands.type(QStringLiteral("North"));
    QVERIFY(hands.tabTo(QStringLiteral("etherList")));
    hands.type(QStringLiteral("192.0.2.7"));
    QCOMPARE(dialog.findChild<QLineEdit*>("nameEdit")->text(), QStringLiteral("North"));
    QCOMPARE(dialog.findChild<QComboBox*>("etherList")->currentText(), QStringLiteral("192.0.2.7"));
    hands.press(Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
}

void TestKeyboardOnly::serialConnection() {
    NewConnection dialog;
    Hands hands(dialog);
    QVERIFY(hands.ready());
    auto* ports = dialog.findChild<QComboBox*>("serialPorts");
    ports->clear();
    ports->addItems({QStringLiteral("ttyS0"), QStringLiteral("ttyS1")});
    QVERIFY(hands.tabTo(QStringLiteral("etherButton")));
    // Of radio buttons Tab visits the chosen one; the arrow keys choose.
    hands.press(Qt::Key_Down);
    QCOMPARE(hands.focused(), QStringLiteral("serialButton"));
    QVERIFY(dialog.findChild<QRadioButton*>("serialButton")->isChecked());
    hands.press(Qt::Key_Tab);
    QCOMPARE(hands.focused(), QStringLiteral("serialPorts"));
    hands.press(Qt::Key_Down);
    QCOMPARE(ports->currentText(), QStringLiteral("ttyS1"));
    hands.press(Qt::Key_Return);
    QCOMPARE(dialog.result(), int(QDialog::Accepted));
    QVERIFY(dialog.findChild<QRadioButton*>("serialButton")->isChecked());
}

void TestKeyboardOnly::capture() {
    CaptureControl control(&m_settings, nullptr);
    QList<CaptureInfo> captured;
    connect(&control, &CaptureControl::capture, this,
            [&captured](const CaptureInfo& info) { captured += info; });
    Hands hands(control);
    QVERIFY(hands.ready());
    QVERIFY(hands.tabTo(QStringLiteral("nameEditg")));
    hands.type(QStringLiteral("deep_#"));
    QVERIFY(hands.tabTo(QStringLiteral("incVal")));
    hands.press(Qt::Key_Up, 5);
    QVERIFY(hands.tabTo(QStringLiteral("cursorBox")));
    hands.press(Qt::Key_Space);
    QVERIFY(hands.tabTo(QStringLiteral("captureButton")));
    hands.press(Qt::Key_Space);
    QCOMPARE(captured.size(), 1);
    QVERIFY(captured[0].fileName.endsWith(QStringLiteral("/deep_5.pdf")));
    QVERIFY(captured[0].showCursor);
    // Return captures from wherever the focus is, and the window stays.
    QVERIFY(hands.tabTo(QStringLiteral("nameEditg")));
    hands.press(Qt::Key_Return);
    QCOMPARE(captured.size(), 2);
    QVERIFY(captured[1].fileName.endsWith(QStringLiteral("/deep_6.pdf")));
    QVERIFY(control.isVisible());
    // The directory has a dialog of its own.
    QVERIFY(hands.tabTo(QStringLiteral("browseButton")));
    const ModalDialog<QDialog> directories([](QDialog& shown) { shown.reject(); });
    hands.press(Qt::Key_Space);
    QVERIFY(directories.answered());
    hands.press(Qt::Key_Escape);
    QVERIFY(!control.isVisible());
}

void TestKeyboardOnly::colors() {
    LCD7100 screen;
    screen.showColorPicker();
    auto& picker = *screen.findChild<LCDColorPicker*>();
    Hands hands(picker);
    QVERIFY(hands.ready());
    QSignalSpy changed(&screen, &LCD7100::colorChanged);
    QVERIFY(hands.tabTo(QStringLiteral("sample2")));
    const ModalDialog<QColorDialog> choice([](QColorDialog& shown) {
        shown.setCurrentColor(Qt::yellow);
        QTest::keyClick(&shown, Qt::Key_Return);
    });
    hands.press(Qt::Key_Space);
    QVERIFY(choice.answered());
    QCOMPARE(picker.findChild<ColorEditWidget*>("sample2")->color(), QColor(Qt::yellow));
    QCOMPARE(changed.size(), 0);
    QVERIFY(hands.tabTo(QStringLiteral("sample3")));
    // On to the buttons, until one has applied what is chosen.
    for (int i = 0; i < 3 && changed.isEmpty(); ++i) {
        hands.press(Qt::Key_Tab);
        if (qobject_cast<QPushButton*>(picker.focusWidget())
                ->text()
                .contains(QStringLiteral("Apply")))
            hands.press(Qt::Key_Space);
    }
    QCOMPARE(changed.size(), 1);
    QCOMPARE(screen.backColor(), QColor(Qt::yellow));
    hands.press(Qt::Key_Escape);
    QVERIFY(!picker.isVisible());
}

void TestKeyboardOnly::chat() {
    ChatWindow window(&m_settings, nullptr);
    QSignalSpy sent(&window, &ChatWindow::sendChat);
    Hands hands(window);
    QVERIFY(hands.ready());
    hands.type(QStringLiteral("hello"));
    hands.press(Qt::Key_Return);
    QCOMPARE(sent.size(), 1);
    QCOMPARE(sent[0][0].toString(), QStringLiteral("hello"));
    // On to the transcript, to read it, and back to the line.
    hands.press(Qt::Key_Tab, 2);
    QCOMPARE(window.focusWidget(), window.findChild<QTextEdit*>());
    hands.press(Qt::Key_Tab);
    QCOMPARE(window.focusWidget(), window.findChild<QComboBox*>());
    hands.press(Qt::Key_Escape);
    QVERIFY(!window.isVisible());
}

int main(int argc, char** argv) {
    return runTest<TestKeyboardOnly>(argc, argv);
}

#include "test_keyboard_only.moc"
