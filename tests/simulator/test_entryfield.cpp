// Editing in the text field of the entry page.

#include "EntryField.h"
#include "TestEnvironment.h"

#include <QStringList>

using Keys = QList<int>;

class TestEntryField : public QObject {
    Q_OBJECT

private slots:
    void editing_data();
    void editing();
    void otherKeysAreLeft_data();
    void otherKeysAreLeft();
    void text();
    void everyKeyKeepsTheCursorInside();
};

namespace {

constexpr int backspace = 8;
constexpr int enter = 13;
constexpr int newline = 10;
constexpr int deleteKey = 127;
constexpr int deleteLine = 0x0801;
constexpr int home = 0x2400;
constexpr int endKey = 0x2300;
constexpr int left = 0x2500;
constexpr int up = 0x2600;
constexpr int right = 0x2700;
constexpr int down = 0x2800;

Keys typed(const char* text) {
    Keys keys;
    for (const char* c = text; *c != '\0'; ++c)
        keys.append(static_cast<unsigned char>(*c));
    return keys;
}

QStringList linesOf(const EntryField& field) {
    QStringList lines;
    for (const std::string& line : field.lines())
        lines.append(QString::fromLatin1(line.data(), static_cast<qsizetype>(line.size())));
    return lines;
}

} // namespace

void TestEntryField::editing_data() {
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<int>("line");
    QTest::addColumn<int>("column");
    const QString full(36, 'x');
    const Keys fullKeys(36, 'x');

    QTest::newRow("empty") << Keys() << QStringList{""} << 0 << 0;
    QTest::newRow("typed") << typed("ab") << QStringList{"ab"} << 0 << 2;
    QTest::newRow("high codes") << Keys{0xE9, 0xFF} << QStringList{"\u00E9\u00FF"} << 0 << 2;
    QTest::newRow("inserted") << typed("ac") + Keys{left, 'b'} << QStringList{"abc"} << 0 << 2;
    QTest::newRow("backspace") << typed("abc") + Keys{backspace} << QStringList{"ab"} << 0 << 2;
    QTest::newRow("backspace inside")
        << typed("abc") + Keys{left, backspace} << QStringList{"ac"} << 0 << 1;
    QTest::newRow("backspace in an empty field") << Keys{backspace} << QStringList{""} << 0 << 0;
    QTest::newRow("backspace joins lines")
        << typed("ab") + Keys{enter, 'c', home, backspace} << QStringList{"abc"} << 0 << 2;
    QTest::newRow("backspace does not join what will not fit")
        << fullKeys + Keys{enter, 'c', home, backspace} << QStringList{full, "c"} << 0 << 36;
    QTest::newRow("delete") << typed("abc") + Keys{home, deleteKey} << QStringList{"bc"} << 0 << 0;
    QTest::newRow("delete at the end")
        << typed("ab") + Keys{deleteKey} << QStringList{"ab"} << 0 << 2;
    QTest::newRow("enter") << typed("ab") + Keys{enter, 'c'} << QStringList{"ab", "c"} << 1 << 1;
    QTest::newRow("newline") << Keys{'a', newline} << QStringList{"a", ""} << 1 << 0;
    QTest::newRow("enter with Ctrl") << Keys{'a', 0x0D02} << QStringList{"a", ""} << 1 << 0;
    QTest::newRow("enter inside") << typed("ab") + Keys{left, enter} << QStringList{"a", "b"} << 1
                                  << 0;
    QTest::newRow("enter on the last line scrolls")
        << Keys{'a', enter, 'b', enter, 'c', enter} << QStringList{"b", "c", ""} << 2 << 0;
    QTest::newRow("enter inside the first of three lines scrolls")
        << Keys{'a', 'b', enter, 'c', enter, 'd', up, up, enter} << QStringList{"b", "c", "d"} << 0
        << 0;
    QTest::newRow("a full line wraps") << fullKeys + Keys{'y'} << QStringList{full, "y"} << 1 << 1;
    QTest::newRow("a full line takes no more inside")
        << fullKeys + Keys{left, 'y'} << QStringList{full} << 0 << 35;
    QTest::newRow("home") << typed("abc") + Keys{home} << QStringList{"abc"} << 0 << 0;
    QTest::newRow("end") << typed("abc") + Keys{home, endKey} << QStringList{"abc"} << 0 << 3;
    QTest::newRow("modifiers make no difference")
        << typed("abc") + Keys{home + 3, right + 1} << QStringList{"abc"} << 0 << 1;
    QTest::newRow("left at the start") << Keys{left} << QStringList{""} << 0 << 0;
    QTest::newRow("left onto the line above")
        << typed("ab") + Keys{enter, left} << QStringList{"ab", ""} << 0 << 2;
    QTest::newRow("right at the end") << Keys{'a', right} << QStringList{"a"} << 0 << 1;
    QTest::newRow("right onto the line below")
        << Keys{'a', enter, 'b', left, left, right} << QStringList{"a", "b"} << 1 << 0;
    QTest::newRow("up") << typed("abc") + Keys{enter, 'd', up} << QStringList{"abc", "d"} << 0 << 1;
    QTest::newRow("up onto a shorter line")
        << Keys{'a', enter, 'b', 'c', up} << QStringList{"a", "bc"} << 0 << 1;
    QTest::newRow("up at the top") << Keys{'a', up} << QStringList{"a"} << 0 << 1;
    QTest::newRow("down") << Keys{'a', 'b', enter, 'c', up, down} << QStringList{"ab", "c"} << 1
                          << 1;
    QTest::newRow("down at the bottom") << Keys{'a', down} << QStringList{"a"} << 0 << 1;
    QTest::newRow("delete the only line")
        << typed("abc") + Keys{deleteLine} << QStringList{""} << 0 << 0;
    QTest::newRow("delete the first line")
        << Keys{'a', enter, 'b', up, deleteLine} << QStringList{"b"} << 0 << 0;
    QTest::newRow("delete the last line")
        << Keys{'a', enter, 'b', deleteLine} << QStringList{"a"} << 0 << 0;
}

void TestEntryField::editing() {
    QFETCH(Keys, keys);
    EntryField field;
    for (const int key : keys)
        QVERIFY(field.applyKey(static_cast<std::uint16_t>(key)));
    QTEST(linesOf(field), "lines");
    QTEST(static_cast<int>(field.cursorLine()), "line");
    QTEST(static_cast<int>(field.cursorColumn()), "column");
}

void TestEntryField::otherKeysAreLeft_data() {
    QTest::addColumn<int>("key");
    for (const int key : {0, 1, 9, 26, 27, 31, 0x1200, 0x2100, 0x6000, 0x6400, 0xFFFF})
        QTest::addRow("0x%04x", key) << key;
}

void TestEntryField::otherKeysAreLeft() {
    QFETCH(int, key);
    EntryField field;
    field.applyKey('a');
    QVERIFY(!field.applyKey(static_cast<std::uint16_t>(key)));
    QCOMPARE(linesOf(field), QStringList{"a"});
    QCOMPARE(field.cursorColumn(), std::size_t{1});
}

void TestEntryField::text() {
    EntryField field;
    QCOMPARE(field.text(), std::string());
    for (const int key : Keys{'a', 'b', enter, enter, 'c'})
        field.applyKey(static_cast<std::uint16_t>(key));
    QCOMPARE(field.text(), std::string("ab c"));
    field.clear();
    QCOMPARE(linesOf(field), QStringList{""});
}

void TestEntryField::everyKeyKeepsTheCursorInside() {
    const Keys keys{'x',  'y',    backspace, enter, newline, deleteKey, deleteLine,
                    home, endKey, left,      up,    right,   down};
    std::uint32_t state = 1;
    EntryField field;
    for (int i = 0; i < 20000; ++i) {
        state = state * 1664525 + 1013904223;
        // Characters half of the time, or no line would ever fill up.
        const int key =
            (state & 0x10000U) != 0 ? 'z' : keys.at(static_cast<qsizetype>((state >> 20U) % 13));
        QVERIFY(field.applyKey(static_cast<std::uint16_t>(key)));
        QVERIFY(!field.lines().empty() && field.lines().size() <= EntryField::lineCount);
        QVERIFY(field.cursorLine() < field.lines().size());
        QVERIFY(field.cursorColumn() <= field.lines().at(field.cursorLine()).size());
        for (const std::string& line : field.lines())
            QVERIFY(line.size() <= EntryField::lineLength);
    }
}

int main(int argc, char** argv) {
    return runTest<TestEntryField>(argc, argv);
}

#include "test_entryfield.moc"
