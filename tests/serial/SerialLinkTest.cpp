#include "ConnectGX7100Serial.h"
#include "PtyLine.h"
#include "TestEnvironment.h"

#include <QSignalSpy>

#include <termios.h>

/// The serial link at both its ends: instrument packets on one side, the bytes of a real line on
/// the other, the real worker in between.
class SerialLinkTest : public QObject {
    Q_OBJECT

private slots:
    void opens_the_port_as_the_instrument_wants_it();
    void outgoing_data();
    void outgoing();
    void incoming_data();
    void incoming();
    void packets_arrive_whole_however_they_are_split();
    void files_received_become_packets();
    void everything_works_without_the_timer();
    void strings_go_out_in_order();
    void sends_while_it_connects_are_not_held_up();
    void a_full_line_is_not_a_lost_one();
    void without_a_port_nothing_happens();
    void a_port_that_cannot_be_opened();
    void disconnects_once_and_connects_again();
    void a_second_connect_changes_nothing();
    void a_lost_line_disconnects_once();
    void may_be_deleted_when_it_connects();
};

namespace {

constexpr int patience = 20000;
constexpr int never = 3600000;

/// A worker that only ever wakes because something happened.
SerialTimings withoutTimer() {
    SerialTimings timings;
    timings.wakeUp = never;
    return timings;
}

std::string fromHex(const char* hex) {
    return QByteArray::fromHex(hex).toStdString();
}

QByteArrayList packets(const QSignalSpy& spy) {
    QByteArrayList result;
    for (const QList<QVariant>& arguments : spy)
        result += QByteArray::fromStdString(arguments[0].value<std::string>());
    return result;
}

const QByteArray zeros(4, '\0');

} // namespace

void SerialLinkTest::opens_the_port_as_the_instrument_wants_it() {
    PtyLine line;
    ConnectGX7100Serial link(nullptr);
    QSignalSpy connected(&link, &ConnectGX7100::connected);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    QVERIFY(!link.IsOpen());
    link.Connect(line.portName());
    QVERIFY(link.IsOpen());
    QCOMPARE(connected.size(), 1);
    QCOMPARE(disconnected.size(), 0);

    termios settings{};
    QCOMPARE(tcgetattr(line.port(), &settings), 0);
    QCOMPARE(cfgetospeed(&settings), speed_t{B57600});
    QCOMPARE(cfgetispeed(&settings), speed_t{B57600});
    QCOMPARE(settings.c_cflag & CSIZE, tcflag_t{CS8});
    QCOMPARE(settings.c_cflag & (PARENB | CSTOPB), tcflag_t{CSTOPB});
    QCOMPARE(settings.c_cflag & CRTSCTS, tcflag_t{0});
    QCOMPARE(settings.c_iflag & (IXON | IXOFF), tcflag_t{0});
    QCOMPARE(SerialTimings().wakeUp, 200);
}

void SerialLinkTest::outgoing_data() {
    QTest::addColumn<QByteArray>("packet");
    QTest::addColumn<QByteArray>("bytes");

    const QByteArray head(4, '\x11');
    const auto row = [&head](const char* name, const QByteArray& packet, const QByteArray& bytes) {
        QTest::newRow(name) << head + packet << bytes;
    };
    row("a key", "KEYS" + QByteArray::fromHex("0141"), QByteArray::fromHex("4b0002 0141"));
    row("a key of zeros", "KEYS" + QByteArray(2, '\0'), QByteArray::fromHex("4b0002 0000"));
    row("no key", "KEYS", QByteArray::fromHex("4b0000"));
    row("communication input", "COMIok\n", QByteArray::fromHex("430003 6f6b0a"));
    row("chat", "CHAThello", QByteArray::fromHex("4d0005 68656c6c6f"));
    row("a file transfer packet is ignored", "FXFRabc", "");
    row("screens do not go out", "BNDLabc", "");
    row("an unknown type", "ABCDabc", "");
    row("lower case", "keysab", "");
    row("back channel", "FXTOID:1\nabc", QByteArray::fromHex("59000849443a310a616263"));
    row("back channel, nothing in it", "FXTO", QByteArray::fromHex("590000"));
    row("only the mark", "FXTOCATCH\n", QByteArray::fromHex("59000643415443480a"));
    row("the mark as the id", "FXTOID:CATCH\nfile",
        QByteArray::fromHex("59000949443a43415443480a"));
    row("the mark at 9", "FXTOID:12345\nCATCH\nfile",
        QByteArray::fromHex("59000f49443a31323334350a43415443480a"));
    row("the mark at 10", "FXTOID:123456\nCATCH\nfile",
        QByteArray::fromHex("59001449443a3132333435360a43415443480a66696c65"));
    row("the mark without its line feed", "FXTOID:CATCH\rfile",
        QByteArray::fromHex("59000d49443a43415443480d66696c65"));
    row("the mark in lower case", "FXTOID:catch\nx",
        QByteArray::fromHex("59000a49443a63617463680a78"));
    row("the first mark counts", "FXTOCATCH\nCATCH\n", QByteArray::fromHex("59000643415443480a"));
    row("chat longer than a packet", "CHAT" + QByteArray(65537, 'c'),
        QByteArray::fromHex("4dffff") + QByteArray(65535, 'c') + QByteArray::fromHex("4d00026363"));
}

void SerialLinkTest::outgoing() {
    QFETCH(const QByteArray, packet);
    QFETCH(const QByteArray, bytes);

    PtyLine line;
    ConnectGX7100Serial link(nullptr);
    link.Connect(line.portName());
    link.slotTo(packet.toStdString());
    // Too short to have a type; then a key, to know that all is out.
    link.slotTo(packet.first(7).toStdString());
    link.slotTo(fromHex("00000000 4b455953 0203"));
    QTRY_COMPARE_WITH_TIMEOUT(line.received(), bytes + QByteArray::fromHex("4b0002 0203"),
                              patience);
}

void SerialLinkTest::incoming_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArrayList>("emitted");

    const QByteArray textHead = zeros + "BNDL";
    const auto row = [](const char* name, const char* hex, const QByteArrayList& emitted) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << emitted;
    };
    const auto hex = [](const char* text) { return QByteArray::fromHex(text); };

    row("text alone", "540a00026869", {});
    row("attributes alone", "410a00020101", {});
    row("a C packet alone", "430a000163", {});
    row("a cursor with nothing before it", "520a0003010203",
        {textHead + hex("5400000000 4100000000 5200000003010203")});
    row("text, attributes, cursor", "540a00026869 410a00020001 520a0003010203",
        {textHead + hex("54000000026869 41000000020001 5200000003010203")});
    row("attributes first", "410a00020001 540a00026869 520a0003010203",
        {textHead + hex("54000000026869 41000000020001 5200000003010203")});
    row("the latest text counts", "540a00026869 540a0001 78 520a000101",
        {textHead + hex("540000000178 4100000000 520000000101")});
    row("text and attributes stay", "540a000178 410a000102 520a000101 520a000103",
        {textHead + hex("540000000178 410000000102 520000000101"),
         textHead + hex("540000000178 410000000102 520000000103")});
    row("graphics", "470a0003ff00aa", {textHead + hex("4700000003ff00aa")});
    row("C once in a text bundle", "430a000163 520a000101 520a000101",
        {textHead + hex("5400000000 4100000000 520000000101 430000000163"),
         textHead + hex("5400000000 4100000000 520000000101")});
    row("C once in a graphics bundle", "430a000163 470a000101 470a000102",
        {textHead + hex("470000000101 430000000163"), textHead + hex("470000000102")});
    row("C with the next bundle of either kind", "430a000163 470a000101 520a000101",
        {textHead + hex("470000000101 430000000163"),
         textHead + hex("5400000000 4100000000 520000000101")});
    row("the latest C counts", "430a000163 430a000164 470a000101",
        {textHead + hex("470000000101 430000000164")});
    row("chat", "4d0a0005 68656c6c6f", {zeros + "CHAThello"});
    row("soft keys", "530a0002 0001", {zeros + "SOFT" + hex("0001")});
    row("variables", "560a0001 76", {zeros + "VARSv"});
    row("unknown letters", "5a0a000161 4b0a000161", {});
}

void SerialLinkTest::incoming() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArrayList, emitted);

    PtyLine line;
    ConnectGX7100Serial link(nullptr);
    QSignalSpy packet(&link, &ConnectGX7100::signalFrom);
    QSignalSpy status(&link, &ConnectGX7100::fxstatus);
    link.Connect(line.portName());
    // A chat packet behind it, to know that all is in.
    line.write(bytes + QByteArray::fromHex("4d0a000121"));
    QTRY_COMPARE_WITH_TIMEOUT(packets(packet), emitted + QByteArrayList{zeros + "CHAT!"}, patience);
    QCOMPARE(status.size(), 0);
}

void SerialLinkTest::packets_arrive_whole_however_they_are_split() {
    PtyLine line;
    ConnectGX7100Serial link(nullptr);
    QSignalSpy packet(&link, &ConnectGX7100::signalFrom);
    link.Connect(line.portName());
    for (const char byte : QByteArray::fromHex("4d0a0003616263 560a000176")) {
        line.write(QByteArray(1, byte));
        QTest::qWait(1);
    }
    QTRY_COMPARE_WITH_TIMEOUT(packets(packet), (QByteArrayList{zeros + "CHATabc", zeros + "VARSv"}),
                              patience);
}

void SerialLinkTest::files_received_become_packets() {
    ConnectGX7100Serial link(nullptr);
    QSignalSpy packet(&link, &ConnectGX7100::signalFrom);
    const QByteArray data("a\0b", 3);
    for (const int status : {-1, -5, 1})
        link.FXMessage(status, data);
    QCOMPARE(packet.size(), 0);
    link.FXMessage(0, data);
    link.FXMessage(0, {});
    // Transfer bytes never come this way on a line, but where they would go is settled.
    link.incomingLTermPacket('X', "xyz");
    QCOMPARE(packets(packet),
             (QByteArrayList{zeros + "FXFR" + data, zeros + "FXFR", zeros + "FXFRxyz"}));
}

void SerialLinkTest::everything_works_without_the_timer() {
    PtyLine line;
    ConnectGX7100Serial link(nullptr, withoutTimer());
    QSignalSpy packet(&link, &ConnectGX7100::signalFrom);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    link.Connect(line.portName());
    for (int i = 1; i <= 20; ++i) {
        link.slotTo(fromHex("00000000 4b455953 0141"));
        QTRY_COMPARE_WITH_TIMEOUT(line.received().size(), qsizetype{5} * i, patience);
        line.write(QByteArray::fromHex("4d0a000121"));
        QTRY_COMPARE_WITH_TIMEOUT(packet.size(), i, patience);
    }
    link.Disconnect();
    QTRY_COMPARE_WITH_TIMEOUT(disconnected.size(), 1, patience);
}

void SerialLinkTest::strings_go_out_in_order() {
    PtyLine line;
    ConnectGX7100Serial link(nullptr, withoutTimer());
    link.Connect(line.portName());
    QByteArray expected;
    for (int i = 0; i < 500; ++i) {
        const QByteArray bytes = QByteArray::number(i) + ';';
        link.Send(bytes.toStdString());
        expected += bytes;
    }
    QTRY_COMPARE_WITH_TIMEOUT(line.received(), expected, patience);
}

void SerialLinkTest::sends_while_it_connects_are_not_held_up() {
    PtyLine line;
    ConnectGX7100Serial link(nullptr, withoutTimer());
    connect(&link, &ConnectGX7100::connected, this, [&link] {
        link.Send("first;");
        link.Send("second;");
    });
    link.Connect(line.portName());
    QTRY_COMPARE_WITH_TIMEOUT(line.received(), "first;second;", patience);
}

void SerialLinkTest::a_full_line_is_not_a_lost_one() {
    PtyLine line;
    SerialTimings timings;
    timings.wakeUp = 10;
    ConnectGX7100Serial link(nullptr, timings);
    QSignalSpy packet(&link, &ConnectGX7100::signalFrom);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    link.Connect(line.portName());
    line.setDeaf(true);
    QByteArray expected;
    for (int i = 0; i < 200; ++i) {
        const QByteArray bytes = QByteArray::number(i) + QByteArray(2000, '.');
        link.Send(bytes.toStdString());
        expected += bytes;
    }
    // What arrives is still served while what goes out is stuck.
    line.write(QByteArray::fromHex("4d0a000121"));
    QTRY_COMPARE_WITH_TIMEOUT(packet.size(), 1, patience);
    QVERIFY(link.IsOpen());
    line.setDeaf(false);
    QTRY_COMPARE_WITH_TIMEOUT(line.received().size(), expected.size(), patience);
    QCOMPARE(line.received(), expected);
    QCOMPARE(disconnected.size(), 0);
}

void SerialLinkTest::without_a_port_nothing_happens() {
    ConnectGX7100Serial link(nullptr);
    QSignalSpy connected(&link, &ConnectGX7100::connected);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    QSignalSpy packet(&link, &ConnectGX7100::signalFrom);
    QSignalSpy status(&link, &ConnectGX7100::fxstatus);
    link.stopXfer();
    link.withdrawFiles();
    link.Send("bytes");
    link.slotTo(fromHex("00000000 4b455953 0141"));
    link.slotTo(fromHex("00000000 4658544f 43415443480a 66"));
    link.Disconnect();
    link.threadFinished();
    static_cast<ConnectGX7100&>(link).Connect(std::string("127.0.0.1"), 0, 7100);
    static_cast<ConnectGX7100&>(link).Connect(QStringLiteral("a"), QStringLiteral("b"));
    QVERIFY(!link.IsOpen());
    QCoreApplication::processEvents();
    QCOMPARE(connected.size() + disconnected.size() + packet.size() + status.size(), 0);
}

void SerialLinkTest::a_port_that_cannot_be_opened() {
    ConnectGX7100Serial link(nullptr);
    QSignalSpy connected(&link, &ConnectGX7100::connected);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    for (int attempt = 1; attempt <= 2; ++attempt) {
        link.Connect(QStringLiteral("/dev/no-such-port"));
        QCOMPARE(disconnected.size(), attempt);
        QVERIFY(!link.IsOpen());
    }
    QCoreApplication::processEvents();
    QCOMPARE(disconnected.size(), 2);
    QCOMPARE(connected.size(), 0);

    PtyLine line;
    link.Connect(line.portName());
    QCOMPARE(connected.size(), 1);
    QVERIFY(link.IsOpen());
}

void SerialLinkTest::disconnects_once_and_connects_again() {
    PtyLine line;
    ConnectGX7100Serial link(nullptr);
    QSignalSpy connected(&link, &ConnectGX7100::connected);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    for (int round = 1; round <= 3; ++round) {
        link.Connect(line.portName());
        QCOMPARE(connected.size(), round);
        link.Send("here;");
        QTRY_COMPARE_WITH_TIMEOUT(line.received(), QByteArray("here;").repeated(round), patience);
        link.Disconnect();
        QVERIFY(!link.IsOpen());
        link.Disconnect();
        QTRY_COMPARE_WITH_TIMEOUT(disconnected.size(), round, patience);
        link.Send("lost;");
    }
    QCoreApplication::processEvents();
    QCOMPARE(disconnected.size(), 3);
}

void SerialLinkTest::a_second_connect_changes_nothing() {
    PtyLine line;
    PtyLine other;
    ConnectGX7100Serial link(nullptr);
    QSignalSpy connected(&link, &ConnectGX7100::connected);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    link.Connect(line.portName());
    link.Connect(other.portName());
    link.Send("here;");
    QTRY_COMPARE_WITH_TIMEOUT(line.received(), "here;", patience);
    QCOMPARE(connected.size(), 1);
    QCOMPARE(disconnected.size(), 0);
    QCOMPARE(other.received(), "");
}

void SerialLinkTest::a_lost_line_disconnects_once() {
    for (const SerialTimings& timings : {SerialTimings(), withoutTimer()}) {
        PtyLine line;
        ConnectGX7100Serial link(nullptr, timings);
        QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
        link.Connect(line.portName());
        link.Send("here;");
        QTRY_COMPARE_WITH_TIMEOUT(line.received(), "here;", patience);
        line.unplug();
        QTRY_COMPARE_WITH_TIMEOUT(disconnected.size(), 1, patience);
        QVERIFY(!link.IsOpen());
        link.Send("lost;");
        link.Disconnect();
        QCoreApplication::processEvents();
        QCOMPARE(disconnected.size(), 1);
    }
}

void SerialLinkTest::may_be_deleted_when_it_connects() {
    PtyLine line;
    auto* link = new ConnectGX7100Serial(nullptr);
    connect(link, &ConnectGX7100::connected, this, [link] { delete link; });
    link->Connect(line.portName());
    QCOMPARE(line.received(), "");
}

int main(int argc, char** argv) {
    return runTest<SerialLinkTest>(argc, argv);
}

#include "SerialLinkTest.moc"
