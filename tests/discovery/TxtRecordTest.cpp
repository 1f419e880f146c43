#include "TxtRecord.h"
#include "TestEnvironment.h"

using txtrecord::Keys;

Q_DECLARE_METATYPE(Keys)

namespace {

Keys parsed(const std::string& record) {
    return txtrecord::parse({reinterpret_cast<const unsigned char*>(record.data()), record.size()});
}

} // namespace

class TxtRecordTest : public QObject {
    Q_OBJECT

private slots:
    void parses_data();
    void parses();
    void everyTruncationKeepsTheEntriesBeforeIt();
    void neverReadsBehindTheRecord();
    void theLargestRecord();
    void builds_data();
    void builds();
    void whatIsBuiltIsParsed();
    void aRecordNeverOutgrowsItsLength();
};

void TxtRecordTest::parses_data() {
    QTest::addColumn<std::string>("record");
    QTest::addColumn<Keys>("keys");
    const auto bytes = [](const char* text, std::size_t size) { return std::string(text, size); };

    QTest::newRow("no bytes") << std::string() << Keys{};
    QTest::newRow("one empty entry") << bytes("\x00", 1) << Keys{};
    QTest::newRow("value with =, empty value, no =") << bytes("\x05"
                                                              "a=1=2"
                                                              "\x02"
                                                              "b="
                                                              "\x03"
                                                              "cde",
                                                              13)
                                                     << Keys{{"a", "1=2"}, {"b", ""}};
    QTest::newRow("empty entries between") << bytes("\x00\x03"
                                                    "a=1"
                                                    "\x00\x00\x03"
                                                    "b=2"
                                                    "\x00",
                                                    12)
                                           << Keys{{"a", "1"}, {"b", "2"}};
    QTest::newRow("a repeated key: the last one stays") << bytes("\x03"
                                                                 "a=1"
                                                                 "\x03"
                                                                 "a=2",
                                                                 8)
                                                        << Keys{{"a", "2"}};
    QTest::newRow("keys differ by case") << bytes("\x03"
                                                  "a=1"
                                                  "\x03"
                                                  "A=2",
                                                  8)
                                         << Keys{{"a", "1"}, {"A", "2"}};
    QTest::newRow("an empty key") << bytes("\x02"
                                           "=1",
                                           3)
                                  << Keys{{"", "1"}};
    QTest::newRow("= alone") << bytes("\x01=", 2) << Keys{{"", ""}};
    QTest::newRow("NUL and bytes above 127") << bytes("\x05"
                                                      "a=\x00\xFF\n",
                                                      6)
                                             << Keys{{"a", std::string("\x00\xFF\n", 3)}};
    QTest::newRow("a length past the end") << bytes("\x03"
                                                    "a=1"
                                                    "\x04"
                                                    "b=2",
                                                    8)
                                           << Keys{{"a", "1"}};
    QTest::newRow("a length alone") << bytes("\x01", 1) << Keys{};
    QTest::newRow("the largest length alone") << bytes("\xFF", 1) << Keys{};
    QTest::newRow("the largest length, one byte short")
        << std::string("\xFFk=").append(252, 'v') << Keys{};
    QTest::newRow("the largest length")
        << std::string("\xFFk=").append(253, 'v') << Keys{{"k", std::string(253, 'v')}};
}

void TxtRecordTest::parses() {
    QFETCH(std::string, record);
    QFETCH(Keys, keys);
    QVERIFY(parsed(record) == keys);
}

void TxtRecordTest::everyTruncationKeepsTheEntriesBeforeIt() {
    const std::string record("\x05"
                             "a=1=2"
                             "\x02"
                             "b="
                             "\x03"
                             "c=3",
                             13);
    for (std::size_t size = 0; size <= record.size(); ++size) {
        Keys expected;
        if (size >= 6)
            expected.emplace("a", "1=2");
        if (size >= 9)
            expected.emplace("b", "");
        if (size >= 13)
            expected.emplace("c", "3");
        QVERIFY2(parsed(record.substr(0, size)) == expected, qPrintable(QString::number(size)));
    }
}

void TxtRecordTest::neverReadsBehindTheRecord() {
    // On the heap and exactly as large as the record: the address sanitizer watches its end.
    for (int length = 0; length < 256; ++length) {
        const auto record = std::make_unique<unsigned char[]>(2);
        record[0] = static_cast<unsigned char>(length);
        record[1] = '=';
        const Keys keys = txtrecord::parse({record.get(), 2});
        QCOMPARE(keys.size(), length == 1 ? 1U : 0U);
    }
}

void TxtRecordTest::theLargestRecord() {
    std::string record;
    for (int key = 1000; record.size() + 8 <= 65535; ++key)
        record.append("\x07").append(std::to_string(key)).append("=xy");
    record.resize(65535, '\0');
    QCOMPARE(parsed(record).size(), 8191U);

    QVERIFY(parsed(std::string(65535, '\0')).empty());
    QVERIFY(parsed(std::string(65535, '\xFF')).empty());
}

void TxtRecordTest::builds_data() {
    QTest::addColumn<Keys>("keys");
    QTest::addColumn<std::string>("record");

    QTest::newRow("nothing") << Keys{} << std::string();
    QTest::newRow("in key order") << Keys{{"b", ""}, {"a", "1=2"}}
                                  << std::string("\x05"
                                                 "a=1=2"
                                                 "\x02"
                                                 "b=",
                                                 9);
    QTest::newRow("an empty key") << Keys{{"", "1"}} << std::string("\x02=1");
    QTest::newRow("255 bytes") << Keys{{"k", std::string(253, 'v')}}
                               << std::string("\xFFk=").append(253, 'v');
    QTest::newRow("256 bytes do not fit") << Keys{{"a", "1"}, {"k", std::string(254, 'v')}}
                                          << std::string("\x03"
                                                         "a=1");
}

void TxtRecordTest::builds() {
    QFETCH(Keys, keys);
    QFETCH(std::string, record);
    QVERIFY(txtrecord::build(keys) == record);
}

void TxtRecordTest::whatIsBuiltIsParsed() {
    const Keys keys = {{"", "x"}, {"a", "1=2"}, {"b", ""}, {"model", std::string("\x00\xFF", 2)}};
    QVERIFY(parsed(txtrecord::build(keys)) == keys);
}

void TxtRecordTest::aRecordNeverOutgrowsItsLength() {
    Keys keys;
    for (int i = 0; i < 300; ++i)
        keys.emplace(std::to_string(i), std::string(240, 'v'));
    const std::string record = txtrecord::build(keys);
    QVERIFY(record.size() <= 65535);
    QVERIFY(record.size() > 65535 - 256);
    QVERIFY(parsed(record).size() >= 65535 / 256);
}

int main(int argc, char** argv) {
    return runTest<TxtRecordTest>(argc, argv);
}

#include "TxtRecordTest.moc"
