// The screen and its bitmap as they go over the wire.

#include "BigDigits.h"
#include "InstrumentScreen.h"
#include "SoftKeys.h"
#include "TestEnvironment.h"

using Attribute = InstrumentScreen::Attribute;

class TestInstrumentScreen : public QObject {
    Q_OBJECT

private slots:
    void textUpdate();
    void graphicsUpdate();
    void clipping_data();
    void clipping();
    void cursorStaysOnTheScreen();
    void pixels_data();
    void pixels();
    void pixelsOutsideAreCutOff();
    void fillAndClear();
    void bitmapText();
    void softKeys();
    void softKeyBandsOnTheBitmap();
    void bigDigits();
    void comparison();
};

void TestInstrumentScreen::textUpdate() {
    InstrumentScreen screen;
    screen.put(1, 1, "µ°", Attribute::Highlight);
    screen.put(40, 8, "Z", Attribute::InverseHighlight);
    screen.setCursor(InstrumentScreen::CursorShape::Block, 17, 5);
    const QByteArray update = QByteArray::fromStdString(screen.updatePacket());
    QCOMPARE(update.size(), 8 + 5 + 320 + 5 + 320 + 5 + 3);
    QCOMPARE(update.first(16), QByteArrayLiteral("\0\0\0\0BNDLT\0\0\x01\x40\xE6\xF8 "));
    QCOMPARE(update.sliced(331, 10), QByteArrayLiteral(" ZA\0\0\x01\x40\x02\x02\0"));
    QCOMPARE(update.last(10), QByteArrayLiteral("\0\x03R\0\0\0\x03\x02\x11\x05"));
}

void TestInstrumentScreen::graphicsUpdate() {
    GraphicsBitmap bitmap;
    bitmap.plot(0, 0);
    bitmap.plot(239, 63);
    InstrumentScreen screen;
    screen.showGraphics(bitmap);
    const QByteArray update = QByteArray::fromStdString(screen.updatePacket());
    QCOMPARE(update.size(), 8 + 5 + 1920);
    QCOMPARE(update.first(14), QByteArrayLiteral("\0\0\0\0BNDLG\0\0\x07\x80\x80"));
    QCOMPARE(update.sliced(14, 1918), QByteArray(1918, '\0'));
    QCOMPARE(update.back(), '\x01');
}

void TestInstrumentScreen::clipping_data() {
    QTest::addColumn<int>("column");
    QTest::addColumn<int>("row");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("firstCell"); // -1: nothing is written
    QTest::addColumn<QString>("written");
    QTest::newRow("first cell") << 1 << 1 << "ab" << 0 << "ab";
    QTest::newRow("last cell") << 40 << 8 << "a" << 319 << "a";
    QTest::newRow("runs off the right") << 39 << 2 << "abc" << 78 << "ab";
    QTest::newRow("right of the screen") << 41 << 2 << "abc" << -1 << "";
    QTest::newRow("runs in from the left") << -1 << 2 << "abc" << 40 << "c";
    QTest::newRow("left of the screen") << -2 << 2 << "abc" << -1 << "";
    QTest::newRow("above") << 1 << 0 << "abc" << -1 << "";
    QTest::newRow("below") << 1 << 9 << "abc" << -1 << "";
    QTest::newRow("longer than a row") << 1 << 8 << QString(100, 'x') << 280 << QString(40, 'x');
}

void TestInstrumentScreen::clipping() {
    QFETCH(int, column);
    QFETCH(int, row);
    QFETCH(QString, text);
    QFETCH(int, firstCell);
    QFETCH(QString, written);
    QByteArray expectedText(320, ' ');
    QByteArray expectedAttributes(320, '\0');
    if (firstCell >= 0) {
        expectedText.replace(firstCell, written.size(), written.toLatin1());
        expectedAttributes.replace(firstCell, written.size(), QByteArray(written.size(), '\x01'));
    }
    InstrumentScreen screen;
    screen.put(column, row, text.toStdString(), Attribute::Inverse);
    QCOMPARE(QByteArray::fromStdString(screen.text()), expectedText);
    QCOMPARE(QByteArray::fromStdString(screen.attributes()), expectedAttributes);
    screen.setAttribute(column, row, static_cast<int>(text.size()), Attribute::Normal);
    QCOMPARE(QByteArray::fromStdString(screen.attributes()), QByteArray(320, '\0'));
}

void TestInstrumentScreen::cursorStaysOnTheScreen() {
    InstrumentScreen screen;
    screen.setCursor(InstrumentScreen::CursorShape::Underline, 41, 0);
    QCOMPARE(QByteArray::fromStdString(screen.updatePacket()).last(3), QByteArray("\x01\x28\x01"));
}

void TestInstrumentScreen::pixels_data() {
    QTest::addColumn<int>("x");
    QTest::addColumn<int>("y");
    QTest::addColumn<int>("byte");
    QTest::addColumn<int>("value");
    QTest::newRow("top left") << 0 << 0 << 0 << 0x80;
    QTest::newRow("second") << 1 << 0 << 0 << 0x40;
    QTest::newRow("eighth") << 7 << 0 << 0 << 0x01;
    QTest::newRow("ninth") << 8 << 0 << 1 << 0x80;
    QTest::newRow("top right") << 239 << 0 << 29 << 0x01;
    QTest::newRow("second row") << 0 << 1 << 30 << 0x80;
    QTest::newRow("bottom right") << 239 << 63 << 1919 << 0x01;
}

void TestInstrumentScreen::pixels() {
    QFETCH(int, x);
    QFETCH(int, y);
    QFETCH(int, byte);
    QFETCH(int, value);
    GraphicsBitmap bitmap;
    bitmap.plot(x, y);
    QByteArray expected(1920, '\0');
    expected[byte] = static_cast<char>(value);
    QCOMPARE(QByteArray::fromStdString(bitmap.bytes()), expected);
    QVERIFY(bitmap.isSet(x, y));
    bitmap.plot(x, y, GraphicsBitmap::Ink::Clear);
    QCOMPARE(QByteArray::fromStdString(bitmap.bytes()), QByteArray(1920, '\0'));
}

void TestInstrumentScreen::pixelsOutsideAreCutOff() {
    GraphicsBitmap bitmap;
    for (const auto& [x, y] : QList<std::pair<int, int>>{{-1, 0}, {0, -1}, {240, 0}, {0, 64}}) {
        bitmap.plot(x, y);
        QVERIFY(!bitmap.isSet(x, y));
    }
    bitmap.text(238, -3, "WWW");
    bitmap.fill(-10, 62, 0, 100);
    QCOMPARE(bitmap.bytes().size(), std::size_t{1920});
    QVERIFY(bitmap.isSet(0, 63));
    QVERIFY(!bitmap.isSet(1, 63));
}

void TestInstrumentScreen::fillAndClear() {
    GraphicsBitmap bitmap;
    bitmap.fill(6, 1, 9, 1);
    QCOMPARE(QByteArray::fromStdString(bitmap.bytes()).sliced(30, 2), QByteArray("\x03\xC0"));
    bitmap.fill(7, 0, 8, 63, GraphicsBitmap::Ink::Clear);
    QCOMPARE(QByteArray::fromStdString(bitmap.bytes()).sliced(30, 2), QByteArray("\x02\x40"));
    bitmap.vertical(0, 3, 1);
    QVERIFY(!bitmap.isSet(0, 0) && bitmap.isSet(0, 1) && bitmap.isSet(0, 3));
    QVERIFY(!bitmap.isSet(0, 4));
}

void TestInstrumentScreen::bitmapText() {
    GraphicsBitmap bitmap;
    bitmap.text(0, 0, "1t");
    QByteArray rows;
    for (int row = 0; row < 8; ++row)
        rows += QByteArray::fromStdString(bitmap.bytes()).mid(qsizetype{30} * row, 2).toHex() + ' ';
    // A figure one, a column of nothing, a T.
    QCOMPARE(rows, QByteArray("23e0 6080 2080 2080 2080 2080 7080 0000 "));
}

void TestInstrumentScreen::softKeys() {
    InstrumentScreen screen;
    softkeys::draw(screen, {"TEXT", "", "◂ PREV", "CURSOR", "SEVENTH"});
    QCOMPARE(QString::fromStdString(screen.rowText(7)),
             QString::fromUtf8("▐ TEXT ▌        ▐◂ PREV▌▐CURSOR▌▐SEVENT▌"));
    QCOMPARE(QString::fromStdString(screen.rowText(8)),
             QString::fromUtf8("▐  F1  ▌        ▐  F3  ▌▐  F4  ▌▐  F5  ▌"));
    QByteArray attributes(320, '\0');
    for (const int label : {241, 257, 265, 273, 281, 297, 305, 313})
        attributes.replace(label, 6, QByteArray(6, '\x01'));
    QCOMPARE(QByteArray::fromStdString(screen.attributes()), attributes);
}

void TestInstrumentScreen::softKeyBandsOnTheBitmap() {
    GraphicsBitmap bitmap;
    softkeys::draw(bitmap, {"A", "B", "", "D", "E"});
    for (int band = 0; band < 5; ++band) {
        QCOMPARE(bitmap.isSet(band * 48 + 10, 63), band != 2);
        // The caps stand apart, and in the bottom quarter alone.
        QVERIFY(!bitmap.isSet(band * 48, 60));
        QVERIFY(!bitmap.isSet(band * 48 + 47, 60));
        QVERIFY(!bitmap.isSet(band * 48 + 10, 47));
    }
}

void TestInstrumentScreen::bigDigits() {
    InstrumentScreen screen;
    QCOMPARE(bigdigits::draw(screen, 1, 1, "-42.7 x"), 1 + 4 + 4 + 4 + 2 + 4 + 4);
    QCOMPARE(QString::fromStdString(screen.rowText(1)).trimmed(),
             QString::fromUtf8("█ █ ▀▀█   ▀▀█"));
    QCOMPARE(QString::fromStdString(screen.rowText(2)).trimmed(),
             QString::fromUtf8("▀▀▀ ▀▀█ █▀▀     █"));
    QCOMPARE(QString::fromStdString(screen.rowText(3)).trimmed(), QString::fromUtf8("▀ ▀▀▀ ▀   ▀"));
}

void TestInstrumentScreen::comparison() {
    InstrumentScreen one;
    InstrumentScreen other;
    QVERIFY(one == other);
    other.setCursor(InstrumentScreen::CursorShape::Block, 1, 1);
    QVERIFY(one != other);
    other = one;
    other.showGraphics({});
    QVERIFY(one != other);
}

int main(int argc, char** argv) {
    return runTest<TestInstrumentScreen>(argc, argv);
}

#include "test_instrumentscreen.moc"
