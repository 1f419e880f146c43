// One instrument without a wire: packets in, packets and screens out.

#include "CharacterSet.h"
#include "Instrument.h"
#include "TestEnvironment.h"

#include <QMap>
#include <QRegularExpression>

using namespace std::string_literals;
using namespace std::chrono_literals;

class TestInstrument : public QObject {
    Q_OBJECT

private slots:
    void startPages_data();
    void startPages();
    void everyPageCanBeReadAndItsBoxesJoin_data();
    void everyPageCanBeReadAndItsBoxesJoin();
    void textPageShowsEverything();
    void textPageTurnsAttributes();
    void entryPage();
    void entryPageSends();
    void keysPage();
    void keysPageShowsWhatElsewhereTurnsPages();
    void graphicsPage();
    void graphicsHolds();
    void pagesThatLive_data();
    void pagesThatLive();
    void chat();
    void chatEndsAtItsNul();
    void longChatIsCut();
    void callFromTheInstrument();
    void commAndFiles();
    void whatDoesNothing_data();
    void whatDoesNothing();
    void seedsRepeat();
    void clockRunsOverMidnight();
};

namespace {

Instrument onPage(PageId page) {
    return Instrument({.name = "North", .seed = 7, .page = page});
}

std::string keyPacket(int code) {
    return "\0\0\0\0KEYS"s + static_cast<char>(code >> 8) + static_cast<char>(code & 0xFF);
}

void press(Instrument& instrument, const QList<int>& codes) {
    for (const int code : codes)
        instrument.receive(keyPacket(code));
}

QString row(const Instrument& instrument, int number) {
    return QString::fromStdString(instrument.screen().rowText(number));
}

/// The five bytes that the cursor item ends in: length 3 is checked along with it.
QByteArray cursorOf(const Instrument& instrument) {
    return QByteArray::fromStdString(instrument.updatePacket()).last(3);
}

QByteArray onlyPacket(const Instrument::Response& response) {
    return response.packets.size() == 1 ? QByteArray::fromStdString(response.packets.front())
                                        : QByteArray("not one packet");
}

/// The sides on which a box piece ends, as "udlr", upper case where the line is double.
const QMap<char16_t, QString>& boxSides() {
    static const QMap<char16_t, QString> sides{
        {u'│', "ud"},   {u'─', "lr"},  {u'┼', "udlr"}, {u'┐', "dl"},  {u'└', "ur"},  {u'┴', "ulr"},
        {u'┬', "dlr"},  {u'├', "udr"}, {u'┘', "ul"},   {u'┌', "dr"},  {u'║', "UD"},  {u'═', "LR"},
        {u'╬', "UDLR"}, {u'╗', "DL"},  {u'╚', "UR"},   {u'╩', "ULR"}, {u'╦', "DLR"}, {u'╠', "UDR"},
        {u'╝', "UL"},   {u'╔', "DR"},  {u'╣', "UDL"},
    };
    return sides;
}

/// Whether two neighbours meet: the same line leaves the one as enters the other. A box may be
/// interrupted by text, so only pairs of box pieces are judged.
bool meet(QChar first, QChar second, QLatin1StringView out, QLatin1StringView in) {
    const QString a = boxSides().value(first.unicode());
    const QString b = boxSides().value(second.unicode());
    if (a.isEmpty() || b.isEmpty())
        return true;
    return a.contains(out.first(1)) == b.contains(in.first(1)) &&
           a.contains(out.last(1)) == b.contains(in.last(1));
}

} // namespace

void TestInstrument::startPages_data() {
    QTest::addColumn<int>("page");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("labels");
    const auto row = [](PageId page, const char* title, const char* labels) {
        QTest::newRow(title) << static_cast<int>(page) << QString::fromUtf8(title)
                             << QString::fromUtf8(labels);
    };
    row(PageId::Home, " ◆ North                       10:00:00 ",
        "▐ TEXT ▌▐ EDIT ▌▐ PLOT ▌▐ KEYS ▌▐ CHAT ▌");
    row(PageId::Text, " ◆ North                           TEXT ",
        "▐ ATTR ▌        ▐◂ PREV▌▐NEXT ▶▌▐ HOME ▌");
    row(PageId::Entry, " ◆ North                           EDIT ",
        "▐CURSOR▌▐ SEND ▌▐◂ PREV▌▐NEXT ▶▌▐ HOME ▌");
    row(PageId::Keys, " ◆ North                           KEYS ",
        "▐CLEAR ▌        ▐◂ PREV▌▐NEXT ▶▌▐ HOME ▌");
    row(PageId::Messages, " ◆ North                           CHAT ",
        "▐CLEAR ▌▐ CALL ▌▐◂ PREV▌▐NEXT ▶▌▐ HOME ▌");
}

void TestInstrument::startPages() {
    QFETCH(int, page);
    const Instrument instrument = onPage(static_cast<PageId>(page));
    QTEST(row(instrument, 1), "title");
    QTEST(row(instrument, 7), "labels");
    const QByteArray attributes = QByteArray::fromStdString(instrument.screen().attributes());
    QCOMPARE(attributes.first(40), QByteArray(40, '\x01'));
}

void TestInstrument::everyPageCanBeReadAndItsBoxesJoin_data() {
    QTest::addColumn<int>("page");
    for (const PageId page : allPages) {
        if (page != PageId::Graphics)
            QTest::newRow(std::string(pageName(page)).c_str()) << static_cast<int>(page);
    }
}

void TestInstrument::everyPageCanBeReadAndItsBoxesJoin() {
    QFETCH(int, page);
    Instrument instrument = onPage(static_cast<PageId>(page));
    for (int step = 0; step < 50; ++step) {
        instrument.tick(250ms);
        QStringList rows;
        for (int number = 1; number <= 8; ++number)
            rows.append(row(instrument, number));
        for (int y = 0; y < 8; ++y) {
            QCOMPARE(rows[y].size(), 40);
            // What the display cannot show comes out as a question mark.
            QVERIFY2(!rows[y].contains('?'), qPrintable(rows[y]));
            for (int x = 0; x < 40; ++x) {
                const QString place = rows[y] + QString::number(x);
                if (x < 39)
                    QVERIFY2(meet(rows[y][x], rows[y][x + 1], QLatin1StringView("rR"),
                                  QLatin1StringView("lL")),
                             qPrintable(place));
                if (y < 7)
                    QVERIFY2(meet(rows[y][x], rows[y + 1][x], QLatin1StringView("dD"),
                                  QLatin1StringView("uU")),
                             qPrintable(place));
            }
        }
    }
}

void TestInstrument::textPageShowsEverything() {
    const InstrumentScreen screen = onPage(PageId::Text).screen();
    for (const int attribute : {0, 1, 2, 3})
        QVERIFY(screen.attributes().find(static_cast<char>(attribute)) != std::string::npos);
    for (const int code : {4,   9,   16,  17,  24,  25,  26,  27,  30,  31,  127, 227, 230, 248,
                           179, 191, 192, 193, 194, 195, 196, 197, 217, 218, 185, 186, 187, 188,
                           200, 201, 202, 203, 204, 205, 206, 219, 220, 221, 222, 223})
        QVERIFY2(screen.text().find(static_cast<char>(code)) != std::string::npos,
                 qPrintable(QString::number(code)));
    QCOMPARE(cursorOf(onPage(PageId::Text)), QByteArrayLiteral("\0\x01\x01"));
}

void TestInstrument::textPageTurnsAttributes() {
    Instrument instrument = onPage(PageId::Text);
    // The samples begin in column 20 of rows 2 to 5.
    const auto samples = [&instrument] {
        QByteArray attributes;
        for (const std::size_t line : {1U, 2U, 3U, 4U})
            attributes += instrument.screen().attributes().at(line * 40 + 19);
        return attributes;
    };
    QCOMPARE(samples(), QByteArrayLiteral("\0\x01\x02\x03"));
    press(instrument, {0x6000});
    QCOMPARE(samples(), QByteArrayLiteral("\x01\x02\x03\0"));
    press(instrument, {0x6000, 0x6000, 0x6000});
    QCOMPARE(samples(), QByteArrayLiteral("\0\x01\x02\x03"));
}

void TestInstrument::entryPage() {
    Instrument instrument = onPage(PageId::Entry);
    QCOMPARE(cursorOf(instrument), QByteArrayLiteral("\x01\x03\x03")); // underline, (3, 3)
    press(instrument, {'P', 'u', 'm', 'p', 0xB0});
    QCOMPARE(row(instrument, 3), QString::fromUtf8("│ Pump°") + QString(32, ' ') + u'│');
    QCOMPARE(cursorOf(instrument), QByteArrayLiteral("\x01\x08\x03"));
    press(instrument, {8, 13, 'o', 'k', 0x2500});
    QCOMPARE(row(instrument, 3), QString::fromUtf8("│ Pump") + QString(33, ' ') + u'│');
    QCOMPARE(row(instrument, 4), QString::fromUtf8("│ ok") + QString(35, ' ') + u'│');
    QCOMPARE(cursorOf(instrument), QByteArrayLiteral("\x01\x04\x04"));
    press(instrument, {0x6000});
    QCOMPARE(cursorOf(instrument), QByteArrayLiteral("\x02\x04\x04")); // block
    press(instrument, {0x6000, 0x2600, 0x2400});
    QCOMPARE(cursorOf(instrument), QByteArrayLiteral("\x01\x03\x03"));
    QCOMPARE(row(instrument, 6), QString::fromUtf8("└── line cursor ──────────────── 1:1 ──┘"));
    // The text is still there after a look at another page.
    press(instrument, {27, 0x6100});
    QVERIFY(instrument.page() == PageId::Entry);
    QVERIFY(row(instrument, 3).contains("Pump"));
}

void TestInstrument::entryPageSends() {
    Instrument instrument = onPage(PageId::Entry);
    press(instrument, {'2', '3', 0xF8, 13, 'C'});
    const Instrument::Response response = instrument.receive(keyPacket(0x6100));
    QCOMPARE(onlyPacket(response), QByteArrayLiteral("\0\0\0\0CHATNorth: 23\xC2\xB0 C"));
    QVERIFY(response.screenChanged);
    QVERIFY(!row(instrument, 3).contains("23"));
    // An empty field has nothing to say.
    QVERIFY(instrument.receive(keyPacket(0x6100)).packets.empty());
}

void TestInstrument::keysPage() {
    Instrument instrument = onPage(PageId::Keys);
    press(instrument, {'a', 0x2703, 0x6101, 13, 0x0141});
    QCOMPARE(row(instrument, 2), QString::fromUtf8("│     5 │ 0x0141 │ unknown             │"));
    QCOMPARE(row(instrument, 3), QString::fromUtf8("│     4 │ 0x000D │ Enter               │"));
    QCOMPARE(row(instrument, 4), QString::fromUtf8("│     3 │ 0x6101 │ Shift+F2            │"));
    QCOMPARE(row(instrument, 5), QString::fromUtf8("│     2 │ 0x2703 │ Shift+Ctrl+Right    │"));
    // The latest stands out.
    QCOMPARE(instrument.screen().attributes().at(40 + 10), '\x02');
    QCOMPARE(instrument.screen().attributes().at(80 + 10), '\0');
    press(instrument, {0x6000});
    QCOMPARE(row(instrument, 2), QString::fromUtf8("│       │        │                     │"));
}

void TestInstrument::keysPageShowsWhatElsewhereTurnsPages() {
    Instrument instrument = onPage(PageId::Keys);
    press(instrument, {0x2500, 0x2600, 0x2700, 0x2800, 0x1B01, 0x2400});
    QVERIFY(instrument.page() == PageId::Keys);
    press(instrument, {0x6200});
    QVERIFY(instrument.page() == PageId::Graphics);
    press(instrument, {0x6300, 27});
    QVERIFY(instrument.page() == PageId::Home);
}

void TestInstrument::graphicsPage() {
    Instrument instrument = onPage(PageId::Graphics);
    const QByteArray first = QByteArray::fromStdString(instrument.updatePacket());
    QCOMPARE(first.size(), 8 + 5 + 1920);
    QCOMPARE(first.first(13), QByteArrayLiteral("\0\0\0\0BNDLG\0\0\x07\x80"));
    const auto bitmap = instrument.screen().graphics();
    QVERIFY(bitmap);
    // The title bar, the axes, a key cap.
    QVERIFY(bitmap->isSet(120, 0));
    QVERIFY(bitmap->isSet(27, 30));
    QVERIFY(bitmap->isSet(200, 47));
    QVERIFY(bitmap->isSet(10, 63));
    // The trace crosses every column of the plot, and scrolls.
    for (int x = 28; x < 236; ++x) {
        bool lit = false;
        for (int y = 11; y < 47; ++y)
            lit = lit || bitmap->isSet(x, y);
        QVERIFY2(lit, qPrintable(QString::number(x)));
    }
    QVERIFY(instrument.tick(250ms));
    QVERIFY(QByteArray::fromStdString(instrument.updatePacket()) != first);
    press(instrument, {27});
    QVERIFY(!instrument.screen().graphics());
}

void TestInstrument::graphicsHolds() {
    Instrument instrument = onPage(PageId::Graphics);
    press(instrument, {0x6000});
    const InstrumentScreen held = instrument.screen();
    QVERIFY(!instrument.tick(250ms));
    QVERIFY(instrument.screen() == held);
    press(instrument, {0x6100});
    QVERIFY(instrument.screen() != held); // zoomed
    press(instrument, {0x6100});
    QVERIFY(instrument.screen() == held);
    press(instrument, {0x6000});
    QVERIFY(instrument.tick(250ms));
    QVERIFY(instrument.screen() != held);
}

void TestInstrument::pagesThatLive_data() {
    QTest::addColumn<int>("page");
    QTest::addColumn<bool>("lives");
    for (const PageId page : allPages)
        QTest::newRow(std::string(pageName(page)).c_str())
            << static_cast<int>(page) << (page == PageId::Home || page == PageId::Graphics);
}

void TestInstrument::pagesThatLive() {
    QFETCH(int, page);
    QFETCH(bool, lives);
    Instrument instrument = onPage(static_cast<PageId>(page));
    const InstrumentScreen before = instrument.screen();
    QCOMPARE(instrument.tick(1s), lives);
    QCOMPARE(instrument.screen() != before, lives);
}

void TestInstrument::chat() {
    Instrument instrument = onPage(PageId::Home);
    const Instrument::Response response = instrument.receive("\0\0\0\0CHATAll well?"s);
    QCOMPARE(onlyPacket(response), QByteArrayLiteral("\0\0\0\0CHATNorth: All well?"));
    QVERIFY(!response.key);
    QVERIFY(!response.screenChanged); // it is on another page
    press(instrument, {0x6400});
    QCOMPARE(row(instrument, 2), QString::fromUtf8("│ ▶ All well?") + QString(26, ' ') + u'│');
    QCOMPARE(row(instrument, 3), QString::fromUtf8("│ ◂ All well?") + QString(26, ' ') + u'│');
    QVERIFY(instrument.receive("\0\0\0\0CHATAnd now?"s).screenChanged);
    press(instrument, {0x6000});
    QVERIFY(!row(instrument, 2).contains("well"));
}

void TestInstrument::chatEndsAtItsNul() {
    Instrument instrument = onPage(PageId::Messages);
    QCOMPARE(onlyPacket(instrument.receive("\0\0\0\0CHATone\0two"s)),
             QByteArrayLiteral("\0\0\0\0CHATNorth: one"));
    QCOMPARE(onlyPacket(instrument.receive("\0\0\0\0CHAT"s)),
             QByteArrayLiteral("\0\0\0\0CHATNorth: "));
}

void TestInstrument::longChatIsCut() {
    Instrument instrument = onPage(PageId::Messages);
    const std::string longText(1000000, 'x');
    QCOMPARE(onlyPacket(instrument.receive("\0\0\0\0CHAT"s + longText)),
             QByteArrayLiteral("\0\0\0\0CHATNorth: ") + QByteArray(1024, 'x'));
}

void TestInstrument::callFromTheInstrument() {
    Instrument instrument = onPage(PageId::Messages);
    QCOMPARE(onlyPacket(instrument.receive(keyPacket(0x6100))),
             QByteArrayLiteral("\0\0\0\0CHATNorth: Operator, please call"));
}

void TestInstrument::commAndFiles() {
    Instrument instrument = onPage(PageId::Messages);
    QVERIFY(instrument.receive("\0\0\0\0COMIreset\0x"s).packets.empty());
    QVERIFY(instrument.receive("\0\0\0\0FXTOID:plan.txt\nabc\0d"s).packets.empty());
    QVERIFY(instrument.receive("\0\0\0\0FXTOabc"s).packets.empty());
    QCOMPARE(row(instrument, 2).trimmed(),
             QString::fromUtf8("│ → reset") + QString(30, ' ') + u'│');
    QCOMPARE(row(instrument, 3).mid(2, 20), QString::fromUtf8("◾ plan.txt: 5 bytes "));
    QCOMPARE(row(instrument, 4).mid(2, 19), QString::fromUtf8("◾ unnamed: 3 bytes "));
}

void TestInstrument::whatDoesNothing_data() {
    QTest::addColumn<QByteArray>("packet");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("too short for a type") << QByteArrayLiteral("\0\0\0\0KEY");
    QTest::newRow("unknown type") << QByteArrayLiteral("\0\0\0\0ZZZZbody");
    QTest::newRow("type in small letters") << QByteArrayLiteral("\0\0\0\0keys\0a");
    QTest::newRow("its own kind of packet") << QByteArrayLiteral("\0\0\0\0BNDLT\0\0\0\x01x");
    QTest::newRow("key without a code") << QByteArrayLiteral("\0\0\0\0KEYS");
    QTest::newRow("half a key code") << QByteArrayLiteral("\0\0\0\0KEYSa");
}

void TestInstrument::whatDoesNothing() {
    QFETCH(QByteArray, packet);
    for (const PageId page : allPages) {
        Instrument instrument = onPage(page);
        const InstrumentScreen before = instrument.screen();
        const Instrument::Response response = instrument.receive(packet.toStdString());
        QVERIFY(response.packets.empty() && !response.screenChanged && !response.key);
        QVERIFY(instrument.screen() == before);
    }
}

void TestInstrument::seedsRepeat() {
    for (const PageId page : {PageId::Home, PageId::Graphics}) {
        Instrument one({.name = "A", .seed = 5, .page = page});
        Instrument same({.name = "A", .seed = 5, .page = page});
        Instrument other({.name = "A", .seed = 6, .page = page});
        bool differed = false;
        for (int step = 0; step < 200; ++step) {
            QCOMPARE(one.updatePacket(), same.updatePacket());
            differed = differed || one.updatePacket() != other.updatePacket();
            for (Instrument* instrument : {&one, &same, &other})
                instrument->tick(250ms);
        }
        QVERIFY(differed);
    }
}

void TestInstrument::clockRunsOverMidnight() {
    Instrument instrument({.name = "A", .clock = 24h - 1500ms});
    QVERIFY(row(instrument, 1).contains("23:59:58"));
    instrument.tick(500ms);
    QVERIFY(row(instrument, 1).contains("23:59:59"));
    instrument.tick(1s);
    QVERIFY(row(instrument, 1).contains("00:00:00"));
}

int main(int argc, char** argv) {
    return runTest<TestInstrument>(argc, argv);
}

#include "test_instrument.moc"
