// Which key leads from which page to which.

#include "PageNavigation.h"
#include "TestEnvironment.h"

class TestPageNavigation : public QObject {
    Q_OBJECT

private slots:
    void table_data();
    void table();
    void keysThatLeadNowhere();
    void names();
};

void TestPageNavigation::table_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QList<int>>("codes");
    // From home, text, entry, graphics, keys and messages, in this order; "-" stays.
    QTest::addColumn<QString>("to");
    const auto row = [](const char* key, const QList<int>& codes, const char* to) {
        QTest::newRow(key) << QString::fromLatin1(key) << codes << QString::fromLatin1(to);
    };
    row("Escape", {27, 0x1B01}, "home home home home home home");
    row("F1", {0x6000, 0x6001, 0x6002, 0x6003}, "text - - - - -");
    row("F2", {0x6100, 0x6101, 0x6102, 0x6103}, "entry - - - - -");
    row("F3", {0x6200, 0x6201, 0x6202, 0x6203}, "graphics home text entry graphics keys");
    row("F4", {0x6300, 0x6301, 0x6302, 0x6303}, "keys entry graphics keys messages home");
    row("F5", {0x6400, 0x6401, 0x6402, 0x6403}, "messages home home home home home");
    row("Left", {0x2500, 0x2501, 0x2502, 0x2503}, "messages home text entry graphics keys");
    row("Up", {0x2600, 0x2601, 0x2602, 0x2603}, "messages home text entry graphics keys");
    row("Right", {0x2700, 0x2701, 0x2702, 0x2703}, "text entry graphics keys messages home");
    row("Down", {0x2800, 0x2801, 0x2802, 0x2803}, "text entry graphics keys messages home");
}

void TestPageNavigation::table() {
    QFETCH(QList<int>, codes);
    QFETCH(QString, to);
    const QStringList expected = to.split(' ');
    QCOMPARE(expected.size(), static_cast<qsizetype>(allPages.size()));
    for (const int code : codes) {
        for (const PageId from : allPages) {
            const auto page = pageAfterKey(from, static_cast<std::uint16_t>(code));
            const auto name = page ? pageName(*page) : std::string_view("-");
            QCOMPARE(QString::fromUtf8(name), expected.at(static_cast<int>(from)));
        }
    }
}

void TestPageNavigation::keysThatLeadNowhere() {
    const QList<int> codes{0,      8,      10,     13,     26,     28,     'a',
                           0x60,   0x25,   0xFF,   0x0801, 0x0D02, 0x2100, 0x2200,
                           0x2300, 0x2400, 0x2900, 0x5F00, 0x6500, 0xFFFF};
    for (const int code : codes) {
        for (const PageId from : allPages)
            QVERIFY2(!pageAfterKey(from, static_cast<std::uint16_t>(code)),
                     qPrintable(QString::number(code, 16)));
    }
}

void TestPageNavigation::names() {
    for (const PageId page : allPages)
        QVERIFY(pageNamed(pageName(page)) == page);
    QVERIFY(pageNamed("graphics") == PageId::Graphics);
    QVERIFY(!pageNamed("Graphics"));
    QVERIFY(!pageNamed(""));
}

int main(int argc, char** argv) {
    return runTest<TestPageNavigation>(argc, argv);
}

#include "test_pagenavigation.moc"
