// What the keys page calls the keys.

#include "InstrumentKeys.h"
#include "TestEnvironment.h"

class TestInstrumentKeys : public QObject {
    Q_OBJECT

private slots:
    void names_data();
    void names();
};

void TestInstrumentKeys::names_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("hex");
    QTest::addColumn<QString>("name");
    const auto row = [](int code, const char* hex, const char* name) {
        QTest::newRow(hex) << code << QString::fromLatin1(hex) << QString::fromUtf8(name);
    };
    row(0, "0x0000", "Ctrl+@");
    row(1, "0x0001", "Ctrl+A");
    row(26, "0x001A", "Ctrl+Z");
    row(8, "0x0008", "Backspace");
    row(9, "0x0009", "Tab");
    row(10, "0x000A", "Newline");
    row(13, "0x000D", "Enter");
    row(27, "0x001B", "Escape");
    row(31, "0x001F", "Ctrl+_");
    row(32, "0x0020", "Space");
    row('A', "0x0041", "'A'");
    row('~', "0x007E", "'~'");
    row(127, "0x007F", "Delete");
    row(0xE9, "0x00E9", "'é'");
    row(0xFF, "0x00FF", "'ÿ'");
    row(0x0801, "0x0801", "Shift+Delete line");
    row(0x0D02, "0x0D02", "Ctrl+Enter");
    row(0x0D03, "0x0D03", "Shift+Ctrl+Enter");
    row(0x1200, "0x1200", "Labels");
    row(0x1B01, "0x1B01", "Shift+Escape");
    row(0x1D00, "0x1D00", "Halt");
    row(0x2100, "0x2100", "Page up");
    row(0x2200, "0x2200", "Page down");
    row(0x2300, "0x2300", "End");
    row(0x2400, "0x2400", "Home");
    row(0x2500, "0x2500", "Left");
    row(0x2601, "0x2601", "Shift+Up");
    row(0x2702, "0x2702", "Ctrl+Right");
    row(0x2803, "0x2803", "Shift+Ctrl+Down");
    row(0x6000, "0x6000", "F1");
    row(0x6101, "0x6101", "Shift+F2");
    row(0x6202, "0x6202", "Ctrl+F3");
    row(0x6303, "0x6303", "Shift+Ctrl+F4");
    row(0x6400, "0x6400", "F5");
    row(0x6404, "0x6404", "unknown");
    row(0x0141, "0x0141", "unknown");
    row(0x6500, "0x6500", "unknown");
    row(0xFFFF, "0xFFFF", "unknown");
}

void TestInstrumentKeys::names() {
    QFETCH(int, code);
    const auto key = static_cast<std::uint16_t>(code);
    QTEST(QString::fromStdString(instrumentkey::hexOf(key)), "hex");
    QTEST(QString::fromStdString(instrumentkey::nameOf(key)), "name");
}

int main(int argc, char** argv) {
    return runTest<TestInstrumentKeys>(argc, argv);
}

#include "test_instrumentkeys.moc"
