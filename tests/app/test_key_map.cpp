#include "KeyMap.h"
#include "TestEnvironment.h"

namespace {

constexpr int nothing = -1;

int codeFor(int key, Qt::KeyboardModifiers modifiers, const QString& text) {
    const auto code = keymap::codeFor(key, modifiers, text);
    return code ? *code : nothing;
}

} // namespace

class TestKeyMap : public QObject {
    Q_OBJECT

private slots:
    void keysWithCodesOfTheirOwn_data();
    void keysWithCodesOfTheirOwn();
    void keysWithoutCode_data();
    void keysWithoutCode();
    void typedText_data();
    void typedText();
    void lettersAndDigitsWithoutText_data();
    void lettersAndDigitsWithoutText();
    void modifierBits();
};

void TestKeyMap::keysWithCodesOfTheirOwn_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("plain");
    QTest::addColumn<int>("shift");
    QTest::addColumn<int>("meta");
    QTest::addColumn<int>("both");

    QTest::newRow("Escape") << int(Qt::Key_Escape) << 27 << 27 << 27 << 27;
    QTest::newRow("Backspace") << int(Qt::Key_Backspace) << 8 << 0x0801 << 0x0802 << 0x0803;
    QTest::newRow("Return") << int(Qt::Key_Return) << 13 << 10 << 0x0D02 << 0x0D03;
    QTest::newRow("Enter") << int(Qt::Key_Enter) << 13 << 10 << 0x0D02 << 0x0D03;
    QTest::newRow("Home") << int(Qt::Key_Home) << 0x2400 << 0x2401 << 0x2402 << 0x2403;
    QTest::newRow("End") << int(Qt::Key_End) << 0x2300 << 0x2301 << 0x2302 << 0x2303;
    QTest::newRow("Left") << int(Qt::Key_Left) << 0x2500 << 0x2501 << 0x2502 << 0x2503;
    QTest::newRow("Up") << int(Qt::Key_Up) << 0x2600 << 0x2601 << 0x2602 << 0x2603;
    QTest::newRow("Right") << int(Qt::Key_Right) << 0x2700 << 0x2701 << 0x2702 << 0x2703;
    QTest::newRow("Down") << int(Qt::Key_Down) << 0x2800 << 0x2801 << 0x2802 << 0x2803;
    QTest::newRow("Page Up") << int(Qt::Key_PageUp) << 0x2100 << 0x2101 << 0x2102 << 0x2103;
    QTest::newRow("Page Down") << int(Qt::Key_PageDown) << 0x2200 << 0x2201 << 0x2202 << 0x2203;
    QTest::newRow("F1") << int(Qt::Key_F1) << 0x6000 << 0x6001 << 0x6002 << 0x6003;
    QTest::newRow("F2") << int(Qt::Key_F2) << 0x6100 << 0x6101 << 0x6102 << 0x6103;
    QTest::newRow("F3") << int(Qt::Key_F3) << 0x6200 << 0x6201 << 0x6202 << 0x6203;
    QTest::newRow("F4") << int(Qt::Key_F4) << 0x6300 << 0x6301 << 0x6302 << 0x6303;
    QTest::newRow("F5") << int(Qt::Key_F5) << 0x6400 << 0x6401 << 0x6402 << 0x6403;
}

void TestKeyMap::keysWithCodesOfTheirOwn() {
    QFETCH(const int, key);
    QFETCH(const int, plain);
    QFETCH(const int, shift);
    QFETCH(const int, meta);
    QFETCH(const int, both);
    // What such a key would type makes no difference.
    for (const QString& text : {QString(), QStringLiteral("\r"), QStringLiteral("x")}) {
        QCOMPARE(codeFor(key, Qt::NoModifier, text), plain);
        QCOMPARE(codeFor(key, Qt::ShiftModifier, text), shift);
        QCOMPARE(codeFor(key, Qt::MetaModifier, text), meta);
        QCOMPARE(codeFor(key, Qt::ShiftModifier | Qt::MetaModifier, text), both);
        // Only Shift and Meta count.
        QCOMPARE(codeFor(key, Qt::ControlModifier | Qt::AltModifier | Qt::KeypadModifier, text),
                 plain);
        QCOMPARE(codeFor(key, Qt::ControlModifier | Qt::ShiftModifier, text), shift);
    }
}

void TestKeyMap::keysWithoutCode_data() {
    QTest::addColumn<int>("key");

    QTest::newRow("F6") << int(Qt::Key_F6);
    QTest::newRow("F35") << int(Qt::Key_F35);
    QTest::newRow("Insert") << int(Qt::Key_Insert);
    QTest::newRow("Shift") << int(Qt::Key_Shift);
    QTest::newRow("Meta") << int(Qt::Key_Meta);
    QTest::newRow("Control") << int(Qt::Key_Control);
    QTest::newRow("Alt") << int(Qt::Key_Alt);
    QTest::newRow("AltGr") << int(Qt::Key_AltGr);
    QTest::newRow("Caps Lock") << int(Qt::Key_CapsLock);
    QTest::newRow("dead acute") << int(Qt::Key_Dead_Acute);
    QTest::newRow("unknown") << int(Qt::Key_unknown);
    QTest::newRow("none") << 0;
    QTest::newRow("below 0") << int(Qt::Key_0) - 1;
    QTest::newRow("above 9") << int(Qt::Key_9) + 1;
    QTest::newRow("below A") << int(Qt::Key_A) - 1;
    QTest::newRow("above Z") << int(Qt::Key_Z) + 1;
}

void TestKeyMap::keysWithoutCode() {
    QFETCH(const int, key);
    QCOMPARE(codeFor(key, Qt::NoModifier, {}), nothing);
    QCOMPARE(codeFor(key, Qt::ShiftModifier | Qt::MetaModifier, {}), nothing);
}

void TestKeyMap::typedText_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("code");

    QTest::newRow("a") << int(Qt::Key_A) << QStringLiteral("a") << 97;
    QTest::newRow("A") << int(Qt::Key_A) << QStringLiteral("A") << 65;
    QTest::newRow("Control A") << int(Qt::Key_A) << QString(QChar(1)) << 1;
    QTest::newRow("7") << int(Qt::Key_7) << QStringLiteral("7") << 55;
    QTest::newRow("space") << int(Qt::Key_Space) << QStringLiteral(" ") << 32;
    QTest::newRow("Tab") << int(Qt::Key_Tab) << QStringLiteral("\t") << 9;
    QTest::newRow("Delete") << int(Qt::Key_Delete) << QString(QChar(127)) << 127;
    QTest::newRow("tilde") << int(Qt::Key_AsciiTilde) << QStringLiteral("~") << 126;
    QTest::newRow("e acute") << int(Qt::Key_Eacute) << QString(QChar(0xE9)) << 0xE9;
    QTest::newRow("euro: low byte") << int(Qt::Key_unknown) << QString(QChar(0x20AC)) << 0xAC;
    QTest::newRow("low byte 0") << int(Qt::Key_unknown) << QString(QChar(0x0100)) << 0;
    QTest::newRow("NUL") << int(Qt::Key_Space) << QString(QChar(0)) << 0;
    QTest::newRow("first of several") << int(Qt::Key_unknown) << QStringLiteral("xyz") << 120;
    QTest::newRow("F6 that types") << int(Qt::Key_F6) << QStringLiteral("q") << 113;
}

void TestKeyMap::typedText() {
    QFETCH(const int, key);
    QFETCH(const QString, text);
    QFETCH(const int, code);
    QCOMPARE(codeFor(key, Qt::NoModifier, text), code);
    // The text already has the modifiers in it.
    QCOMPARE(codeFor(key, Qt::ShiftModifier | Qt::MetaModifier, text), code);
}

void TestKeyMap::lettersAndDigitsWithoutText_data() {
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("code");

    QTest::newRow("A") << int(Qt::Key_A) << 1;
    QTest::newRow("B") << int(Qt::Key_B) << 2;
    QTest::newRow("Y") << int(Qt::Key_Y) << 25;
    QTest::newRow("Z") << int(Qt::Key_Z) << 26;
    QTest::newRow("0") << int(Qt::Key_0) << 16;
    QTest::newRow("1") << int(Qt::Key_1) << 17;
    QTest::newRow("9") << int(Qt::Key_9) << 25;
}

void TestKeyMap::lettersAndDigitsWithoutText() {
    QFETCH(const int, key);
    QFETCH(const int, code);
    QCOMPARE(codeFor(key, Qt::NoModifier, {}), code);
    QCOMPARE(codeFor(key, Qt::MetaModifier, {}), code);
}

void TestKeyMap::modifierBits() {
    QCOMPARE(keymap::modifierBits(Qt::NoModifier), 0);
    QCOMPARE(keymap::modifierBits(Qt::ShiftModifier), 1);
    QCOMPARE(keymap::modifierBits(Qt::MetaModifier), 2);
    QCOMPARE(keymap::modifierBits(Qt::ShiftModifier | Qt::MetaModifier), 3);
    QCOMPARE(keymap::modifierBits(Qt::ControlModifier | Qt::AltModifier), 0);
}

int main(int argc, char** argv) {
    return runTest<TestKeyMap>(argc, argv);
}

#include "test_key_map.moc"
