#include "ShownLcd.h"
#include "TestEnvironment.h"

#include <QContextMenuEvent>
#include <QFontDialog>
#include <QKeyEvent>
#include <QMenu>
#include <QSignalSpy>

namespace {

/// A widget that counts the key presses that its child leaves to it.
class KeyCounter : public QWidget {
public:
    void keyPressEvent(QKeyEvent* /*event*/) override { ++presses; }
    int presses = 0;
};

} // namespace

/// The screen widget's other side: mouse, keys, focus, menu, colours and fonts.
class TestLCD7100Operator : public QObject {
    Q_OBJECT

private slots:
    void softKeys_data() {
        QTest::addColumn<Qt::MouseButton>("button");
        QTest::addColumn<Qt::KeyboardModifiers>("held");
        QTest::addColumn<QPoint>("click");
        QTest::addColumn<QVector<int>>("keyAndModifiers");
        const Qt::KeyboardModifiers none = Qt::NoModifier;
        const Qt::KeyboardModifiers shift = Qt::ShiftModifier;
        const Qt::KeyboardModifiers meta = Qt::MetaModifier;

        QTest::newRow("F1") << Qt::LeftButton << none << QPoint(0, 239) << QVector<int>{96, 0};
        QTest::newRow("F3") << Qt::LeftButton << none << QPoint(240, 200) << QVector<int>{98, 0};
        QTest::newRow("F5") << Qt::LeftButton << none << QPoint(479, 239) << QVector<int>{100, 0};
        QTest::newRow("right button")
            << Qt::RightButton << none << QPoint(479, 239) << QVector<int>{100, 0};
        QTest::newRow("middle button")
            << Qt::MiddleButton << none << QPoint(479, 239) << QVector<int>{};
        QTest::newRow("Shift") << Qt::LeftButton << shift << QPoint(479, 239)
                               << QVector<int>{100, 1};
        QTest::newRow("Meta") << Qt::LeftButton << meta << QPoint(479, 239) << QVector<int>{100, 2};
        QTest::newRow("both") << Qt::LeftButton << (shift | meta) << QPoint(479, 239)
                              << QVector<int>{100, 3};
        QTest::newRow("Control and Alt do not count")
            << Qt::LeftButton << (Qt::ControlModifier | Qt::AltModifier) << QPoint(479, 239)
            << QVector<int>{100, 0};
        QTest::newRow("exactly three quarters")
            << Qt::LeftButton << none << QPoint(240, 180) << QVector<int>{};
        QTest::newRow("just below")
            << Qt::LeftButton << none << QPoint(240, 181) << QVector<int>{98, 0};
        QTest::newRow("top") << Qt::LeftButton << none << QPoint(240, 10) << QVector<int>{};
    }
    void softKeys() {
        QFETCH(const Qt::MouseButton, button);
        QFETCH(const Qt::KeyboardModifiers, held);
        QFETCH(const QPoint, click);
        QFETCH(const QVector<int>, keyAndModifiers);
        ShownLcd shown;
        QVector<int> got;
        connect(&shown.lcd, &LCD7100::MakeKey, this,
                [&got](unsigned char key, unsigned char modifiers) { got << key << modifiers; });
        QTest::mouseClick(&shown.lcd, button, held, click);
        QCOMPARE(got, keyAndModifiers);
    }

    void pressesArePassedOn_data() {
        QTest::addColumn<QPoint>("click");
        QTest::newRow("above the soft keys") << QPoint(240, 10);
        QTest::newRow("on a soft key") << QPoint(240, 230);
    }
    void pressesArePassedOn() {
        QFETCH(const QPoint, click);
        const ShownLcd shown;
        QMouseEvent press(QEvent::MouseButtonPress, click, shown.lcd.mapToGlobal(click),
                          Qt::LeftButton, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(const_cast<LCD7100*>(&shown.lcd), &press);
        QVERIFY(!press.isAccepted());
    }

    void keysReachTheWindow() {
        KeyCounter window;
        auto* lcd = new LCD7100(&window);
        window.show();
        lcd->setFocus();
        int sent = 0;
        for (const Qt::Key key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Return, Qt::Key_Escape,
                                  Qt::Key_F1, Qt::Key_Up, Qt::Key_Delete}) {
            QTest::keyPress(lcd, key);
            QCOMPARE(window.presses, ++sent);
        }
    }

    void focusIsAnnounced() {
        QWidget window;
        LCD7100 lcd(&window);
        QWidget other(&window);
        other.setFocusPolicy(Qt::StrongFocus);
        window.show();
        window.activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        other.setFocus();
        QSignalSpy spy(&lcd, &LCD7100::drawFocusRing);
        lcd.setFocus();
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.takeFirst().at(0).toBool(), true);
        other.setFocus();
        QCOMPARE(spy.size(), 1);
        QCOMPARE(spy.takeFirst().at(0).toBool(), false);
    }

    void theMenuOpensAtTheMouse() {
        ShownLcd shown;
        auto* menu = shown.lcd.findChild<QMenu*>();
        QVERIFY(menu != nullptr);
        QStringList entries;
        for (const QAction* action : menu->actions())
            entries << action->text();
        QCOMPARE(entries,
                 QStringList({QStringLiteral("Edit Color..."), QStringLiteral("Edit Font..."),
                              QStringLiteral("Capture Control")}));

        const QPoint mouse(123, 77);
        QCursor::setPos(mouse);
        QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(5, 5),
                                shown.lcd.mapToGlobal(QPoint(5, 5)));
        QCoreApplication::sendEvent(&shown.lcd, &event);
        QTRY_VERIFY_WITH_TIMEOUT(menu->isVisible(), patienceMs);
        QCOMPARE(menu->pos(), mouse);
        menu->close();
    }

    void coloursAreShownAndRead() {
        ShownLcd shown;
        QSignalSpy changed(&shown.lcd, &LCD7100::colorChanged);
        shown.set(ReferencePainter::randomScreen(7));
        shown.lcd.redraw(false);
        shown.lcd.setColors(QColor(10, 20, 30), QColor(240, 230, 220), QColor(200, 20, 120));
        shown.reference.textColor = QColor(10, 20, 30);
        shown.reference.background = QColor(240, 230, 220);
        shown.reference.highlight = QColor(200, 20, 120);
        QVERIFY(shown.shows());
        QCOMPARE(shown.lcd.backColor(), QColor(240, 230, 220));
        QCOMPARE(shown.lcd.getColors(),
                 QByteArray::fromHex("0000000300ff0a141e0000000300fff0e6dc0000000300ffc81478"));
        QVERIFY(changed.isEmpty());
    }

    void defaultColoursAreTheseBytes() {
        QCOMPARE(LCD7100().getColors(),
                 QByteArray::fromHex("0000000300ff0000ff0000000300ffe0e0e00000000300ffff0000"));
    }

    void storedColoursComeBackOpaque() {
        LCD7100 lcd;
        QSignalSpy changed(&lcd, &LCD7100::colorChanged);
        lcd.setColors(
            QByteArray::fromHex("000000030001020304000000030080a0b0c00000000300000000ff"));
        QCOMPARE(lcd.getColors(),
                 QByteArray::fromHex("0000000300ff0203040000000300ffa0b0c00000000300ff0000ff"));
        lcd.setColors(QByteArray());
        QCOMPARE(lcd.getColors(),
                 QByteArray::fromHex("0000000300ff0000000000000300ff0000000000000300ff000000"));
        lcd.setDefaultColors();
        QCOMPARE(lcd.getColors(), LCD7100().getColors());
        QVERIFY(changed.isEmpty());
    }

    void coloursFromTheDialogAreAnnounced() {
        LCD7100 lcd;
        QSignalSpy changed(&lcd, &LCD7100::colorChanged);
        for (int i = 1; i <= 2; ++i) {
            lcd.setColorsFromDialog(QColor(1, 2, 3), QColor(4, 5, 6), QColor(7, 8, 9));
            QCOMPARE(changed.size(), i);
            QCOMPARE(changed.last().at(0).toByteArray(),
                     QByteArray::fromHex("0000000300ff0102030000000300ff0405060000000300ff070809"));
        }
    }

    void fontsAreShownWithoutASignal() {
        ShownLcd shown;
        QSignalSpy changed(&shown.lcd, &LCD7100::fontFamilyChanged);
        shown.set(ReferencePainter::randomScreen(8));
        shown.lcd.setFontFamily(QStringLiteral("Liberation Mono"));
        QCOMPARE(shown.lcd.getFontFamily(), QStringLiteral("Liberation Mono"));
        shown.reference.family = QStringLiteral("Liberation Mono");
        shown.lcd.resize(960, 480);
        QVERIFY(shown.shows());
        QVERIFY(changed.isEmpty());
    }

    void aFontLeftAsItIsStays_data() {
        QTest::addColumn<QString>("family");
        QTest::newRow("there") << QStringLiteral("Liberation Mono");
        QTest::newRow("has a substitute of its own") << QStringLiteral("Arial");
        QTest::newRow("missing") << QStringLiteral("No Such Family");
    }
    void aFontLeftAsItIsStays() {
        QFETCH(const QString, family);
        ShownLcd shown;
        shown.lcd.setFontFamily(family);
        QSignalSpy changed(&shown.lcd, &LCD7100::fontFamilyChanged);
        QString offered;
        QTimer::singleShot(0, [&] {
            auto* dialog = qobject_cast<QFontDialog*>(QApplication::activeModalWidget());
            offered = dialog->currentFont().family();
            dialog->accept();
        });
        shown.lcd.showFontEditor();
        // What the operator sees on the screen is what the dialog begins with.
        QCOMPARE(QFontInfo(QFont(offered)).family(), QFontInfo(QFont(family)).family());
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed[0][0].toString(), family);
        QCOMPARE(shown.lcd.getFontFamily(), family);
    }

    void theFontDialogSetsAndAnnouncesAFont_data() {
        QTest::addColumn<bool>("accepted");
        QTest::addColumn<QString>("family");
        QTest::newRow("accepted") << true << QStringLiteral("Liberation Serif");
        QTest::newRow("cancelled: the font of before")
            << false << QStringLiteral("Liberation Mono");
    }
    void theFontDialogSetsAndAnnouncesAFont() {
        QFETCH(const bool, accepted);
        QFETCH(const QString, family);
        ShownLcd shown(QSize(480, 240));
        shown.set(ReferencePainter::randomScreen(9));
        shown.lcd.setFontFamily(QStringLiteral("Liberation Mono"));
        QSignalSpy changed(&shown.lcd, &LCD7100::fontFamilyChanged);
        bool opened = false;
        QTimer::singleShot(0, this, [&] {
            auto* dialog = qobject_cast<QFontDialog*>(QApplication::activeModalWidget());
            if (dialog == nullptr)
                return;
            opened = dialog->currentFont().family() == QStringLiteral("Liberation Mono");
            dialog->setCurrentFont(QFont(QStringLiteral("Liberation Serif"), 30));
            accepted ? dialog->accept() : dialog->reject();
        });
        shown.lcd.showFontEditor();
        QVERIFY(opened);
        QCOMPARE(changed.size(), 1);
        QCOMPARE(changed[0].at(0).toString(), family);
        QCOMPARE(shown.lcd.getFontFamily(), family);
        shown.reference.family = family;
        shown.lcd.resize(500, 240);
        QVERIFY(shown.shows());
    }
};

int main(int argc, char** argv) {
    return runTest<TestLCD7100Operator>(argc, argv);
}

#include "test_lcd7100_operator.moc"
