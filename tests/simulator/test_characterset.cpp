// The instrument's character set, code by code.

#include "CharacterSet.h"
#include "TestEnvironment.h"

class TestCharacterSet : public QObject {
    Q_OBJECT

private slots:
    void symbols_data();
    void symbols();
    void oneWay_data();
    void oneWay();
    void everyCodeIsOneCharacter();
};

void TestCharacterSet::symbols_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("character");
    const auto row = [](int code, const char* character) {
        QTest::addRow("%d %s", code, character) << code << QString::fromUtf8(character);
    };
    row(4, "◆");
    row(9, "◾");
    row(16, "▶");
    row(17, "◂");
    row(24, "↑");
    row(25, "↓");
    row(26, "→");
    row(27, "←");
    row(30, "▲");
    row(31, "▼");
    row(' ', " ");
    row('A', "A");
    row('~', "~");
    row(127, "Δ");
    row(0xA7, "§");
    row(0xB5 - 1, "´"); // 180 is Latin-1 here, though a box piece elsewhere
    row(0xD0, "Ð");
    row(0xFF, "ÿ");
    row(227, "π");
    row(230, "µ");
    row(248, "°");
    row(179, "│");
    row(196, "─");
    row(197, "┼");
    row(191, "┐");
    row(192, "└");
    row(193, "┴");
    row(194, "┬");
    row(195, "├");
    row(217, "┘");
    row(218, "┌");
    row(185, "╣");
    row(186, "║");
    row(187, "╗");
    row(188, "╝");
    row(200, "╚");
    row(201, "╔");
    row(202, "╩");
    row(203, "╦");
    row(204, "╠");
    row(205, "═");
    row(206, "╬");
    row(219, "█");
    row(220, "▄");
    row(221, "▌");
    row(222, "▐");
    row(223, "▀");
}

void TestCharacterSet::symbols() {
    QFETCH(int, code);
    QFETCH(QString, character);
    const std::string one(1, static_cast<char>(code));
    QCOMPARE(QByteArray::fromStdString(charset::fromUtf8(character.toStdString())),
             QByteArray::fromStdString(one));
    QCOMPARE(QString::fromStdString(charset::toUtf8(one)), character);
}

void TestCharacterSet::oneWay_data() {
    QTest::addColumn<QByteArray>("utf8");
    QTest::addColumn<QByteArray>("codes");
    QTest::newRow("nothing") << QByteArray() << QByteArray();
    QTest::newRow("greek mu is the micro sign") << QByteArray("\xCE\xBC") << QByteArray("\xE6");
    QTest::newRow("Latin-1 whose code is a symbol") << QByteArray("\xC3\x84") << QByteArray("?");
    QTest::newRow("no such character") << QByteArray("\xE2\x82\xAC"
                                                     "5")
                                       << QByteArray("?5");
    QTest::newRow("beyond 16 bits") << QByteArray("\xF0\x9F\x98\x80!") << QByteArray("?!");
    QTest::newRow("control characters") << QByteArray("a\nb\tc") << QByteArray("a b c");
    QTest::newRow("NUL") << QByteArray("a\0b", 3) << QByteArray("a b");
    QTest::newRow("C1 control character") << QByteArray("\xC2\x85") << QByteArray(" ");
    QTest::newRow("continuation without a start") << QByteArray("\x80x") << QByteArray("?x");
    QTest::newRow("start without a continuation") << QByteArray("\xC3x") << QByteArray("?x");
    QTest::newRow("cut off, two of three") << QByteArray("\xE2\x94") << QByteArray("??");
    QTest::newRow("cut off, one of four") << QByteArray("\xF0") << QByteArray("?");
    QTest::newRow("impossible byte") << QByteArray("\xFFz") << QByteArray("?z");
}

void TestCharacterSet::oneWay() {
    QFETCH(QByteArray, utf8);
    QFETCH(QByteArray, codes);
    QCOMPARE(QByteArray::fromStdString(charset::fromUtf8(utf8.toStdString())), codes);
}

void TestCharacterSet::everyCodeIsOneCharacter() {
    for (int code = 0; code < 256; ++code) {
        const std::string text = charset::toUtf8(std::string(1, static_cast<char>(code)));
        QCOMPARE(QString::fromStdString(text).size(), 1);
        // What a terminal would obey must never come out.
        QVERIFY2(QString::fromStdString(text).front().category() != QChar::Other_Control,
                 qPrintable(QString::number(code)));
    }
}

int main(int argc, char** argv) {
    return runTest<TestCharacterSet>(argc, argv);
}

#include "test_characterset.moc"
