#include "Announcements.h"
#include "LCD7100.h"
#include "ScreenText.h"
#include "TestEnvironment.h"

#include <QAccessible>
#include <QContextMenuEvent>
#include <QCursor>
#include <QMainWindow>
#include <QMenu>
#include <QStatusBar>

namespace {

constexpr qsizetype screenColumns = 40;
constexpr qsizetype screenRows = 8;

QByteArray screen(const QByteArray& firstRow, const QByteArray& lastRow = {}) {
    return firstRow.leftJustified(screenColumns) +
           QByteArray((screenRows - 2) * screenColumns, ' ') + lastRow.leftJustified(screenColumns);
}

QString described(LCD7100& lcd) {
    return QAccessible::queryAccessibleInterface(&lcd)->text(QAccessible::Description);
}

QMenu* menuOf(const LCD7100& lcd) {
    return lcd.findChild<QMenu*>(QString(), Qt::FindDirectChildrenOnly);
}

} // namespace

/// The screen for an operator who cannot see it, or has no mouse.
class TestScreenAccessible : public QObject {
    Q_OBJECT

private slots:
    void words_data() {
        QTest::addColumn<QByteArray>("codes");
        QTest::addColumn<int>("columns");
        QTest::addColumn<QString>("words");

        QTest::newRow("nothing") << QByteArray() << 4 << "";
        QTest::newRow("blank") << QByteArray(8, ' ') << 4 << "";
        QTest::newRow("NULs") << QByteArray(8, '\0') << 4 << "";
        QTest::newRow("two lines") << QByteArray("one two ") << 4 << "one\ntwo";
        QTest::newRow("an empty line") << QByteArray("one     two ") << 4 << "one\ntwo";
        QTest::newRow("gaps within a line") << QByteArray("a  b") << 4 << "a  b";
        QTest::newRow("a last line that is short") << QByteArray("one x") << 4 << "one\nx";
        QTest::newRow("boxes and blocks") << QByteArray("\xc9\xcd\xbb\xdb\xb3ok\xba") << 4 << "ok";
        QTest::newRow("symbols") << QByteArray("5\xf8\x1a\xe3") << 4 << QString::fromUtf8("5°→π");
        QTest::newRow("codes without a sign") << QByteArray("a\1\2b") << 4 << "a  b";
        QTest::newRow("Latin-1") << QByteArray("H\xf8h\xe9") << 4 << QString::fromUtf8("H°hé");
        QTest::newRow("no columns") << QByteArray("ab") << 0 << "a\nb";
    }
    void words() {
        QFETCH(const QByteArray, codes);
        QFETCH(const int, columns);
        QFETCH(const QString, words);
        QCOMPARE(screenText({codes.constData(), std::size_t(codes.size())}, columns), words);
    }

    void theDescriptionIsWhatIsShown() {
        LCD7100 lcd;
        auto* interface = QAccessible::queryAccessibleInterface(&lcd);
        QCOMPARE(interface->role(), QAccessible::Graphic);
        lcd.setTextWait(screen("Depth 12.5 m", "F1").constData());
        QCOMPARE(described(lcd), QStringLiteral("Depth 12.5 m\nF1"));
        lcd.setTextWait(screen("Depth 13.0 m").constData());
        QCOMPARE(described(lcd), QStringLiteral("Depth 13.0 m"));
        lcd.setTextMode(false);
        QCOMPARE(described(lcd), QStringLiteral("The screen shows graphics"));
        lcd.setTextMode(true);
        QCOMPARE(described(lcd), QStringLiteral("Depth 13.0 m"));
        lcd.clearDisplay();
        QCOMPARE(described(lcd), QString());
        // What a screen is called is its owner's affair.
        QCOMPARE(interface->text(QAccessible::Name), QString());
        lcd.setAccessibleName(QStringLiteral("North"));
        QCOMPARE(interface->text(QAccessible::Name), QStringLiteral("North"));
    }

    void updatesAreNotAnnounced() {
        LCD7100 lcd;
        lcd.show();
        QVERIFY(QTest::qWaitForWindowExposed(&lcd));
        announcements::takeAll();
        for (int i = 0; i < 100; ++i) {
            lcd.setTextMode(true);
            lcd.setTextWait(screen(QByteArray::number(i)).constData());
            lcd.setAttrWait(QByteArray(screenColumns * screenRows, '\1').constData());
            lcd.setCursorWait(1, 1 + i % 40, 1);
            lcd.redraw(false);
            lcd.blinkCursor();
            lcd.setTextMode(false);
            lcd.setFullGraphics(QByteArray(1920, '\x55').constData());
        }
        lcd.repaint();
        QCOMPARE(announcements::takeAll(), 0);
    }

    void theMenuKeyOpensTheMenuOnTheScreen_data() {
        QTest::addColumn<QContextMenuEvent::Reason>("reason");
        QTest::addColumn<bool>("onScreen");
        QTest::newRow("Menu key") << QContextMenuEvent::Keyboard << true;
        QTest::newRow("mouse") << QContextMenuEvent::Mouse << false;
    }
    void theMenuKeyOpensTheMenuOnTheScreen() {
        QFETCH(const QContextMenuEvent::Reason, reason);
        QFETCH(const bool, onScreen);
        LCD7100 lcd;
        lcd.setGeometry(200, 200, 300, 150);
        lcd.show();
        QVERIFY(QTest::qWaitForWindowExposed(&lcd));
        // The mouse is elsewhere.
        QCursor::setPos(20, 30);
        QContextMenuEvent request(reason, QPoint(1, 1), lcd.mapToGlobal(QPoint(1, 1)));
        QCoreApplication::sendEvent(&lcd, &request);
        QMenu* menu = menuOf(lcd);
        QVERIFY(menu->isVisible());
        QCOMPARE(menu->pos(), onScreen ? lcd.mapToGlobal(lcd.rect().center()) : QPoint(20, 30));
        // By keyboard, Return takes the first entry.
        QCOMPARE(menu->activeAction(), onScreen ? menu->actions().constFirst() : nullptr);
        menu->close();
    }

    void theMenuTellsTheStatusBar() {
        QMainWindow window;
        auto* lcd = new LCD7100;
        window.setCentralWidget(lcd);
        window.statusBar();
        window.show();
        QVERIFY(QTest::qWaitForWindowExposed(&window));
        lcd->showMenuOnScreen();
        QStringList told;
        for (QAction* action : menuOf(*lcd)->actions()) {
            menuOf(*lcd)->setActiveAction(action);
            told += window.statusBar()->currentMessage();
        }
        menuOf(*lcd)->close();
        QCOMPARE(told, (QStringList{QStringLiteral("Choose the colors of all screens"),
                                    QStringLiteral("Choose the font of all screens"),
                                    QStringLiteral("Save what this screen shows")}));
    }
};

int main(int argc, char** argv) {
    return runTest<TestScreenAccessible>(argc, argv);
}

#include "test_screenaccessible.moc"
