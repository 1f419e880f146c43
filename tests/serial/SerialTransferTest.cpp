#include "ConnectGX7100Serial.h"
#include "PtyLine.h"
#include "TestEnvironment.h"
#include "TransferBlock.h"

#include <QSignalSpy>

/// File transfers over a real line with the real worker; the test plays the instrument, byte for
/// byte.
class SerialTransferTest : public QObject {
    Q_OBJECT

private slots:
    void what_starts_a_transfer_to_the_instrument_data();
    void what_starts_a_transfer_to_the_instrument();
    void without_a_file_nothing_starts_data();
    void without_a_file_nothing_starts();
    void a_mark_too_late_is_no_file();
    void withdrawn_files_are_not_sent();
    void what_starts_a_transfer_from_the_instrument_data();
    void what_starts_a_transfer_from_the_instrument();
    void several_files_go_one_at_a_time();
    void a_failed_file_is_no_packet();
    void an_instrument_that_never_answers();
    void packets_wait_for_the_end_of_a_transfer();
    void the_order_of_a_pass();
    void one_string_goes_out_a_pass();
    void stop_while_receiving();
    void stop_while_sending();
    void stop_drops_what_is_queued_for_output();
    void stop_without_a_transfer();
    void what_is_left_of_an_aborted_block_starts_nothing();
    void disconnect_ends_a_transfer();
    void a_lost_line_ends_a_transfer();
    void deletion_ends_a_transfer();
};

namespace {

constexpr int patience = 20000;

QByteArray hex(const char* text) {
    return QByteArray::fromHex(text);
}

/// Transfer bytes as the instrument sends them.
QByteArray fromInstrument(const QByteArray& bytes) {
    return "X\n" + QByteArray::fromHex(QByteArray::number(bytes.size() + 0x10000, 16).last(4)) +
           bytes;
}

/// Transfer bytes as the program sends them.
QByteArray toInstrument(const QByteArray& bytes) {
    return "X" + QByteArray::fromHex(QByteArray::number(bytes.size() + 0x10000, 16).last(4)) +
           bytes;
}

std::string packetTo(const QByteArray& typeAndBody) {
    return (QByteArray(4, '\0') + typeAndBody).toStdString();
}

const QByteArray enq = fromInstrument("\x05");
const QByteArray gs = toInstrument("\x1d");
const QByteArray zeros(4, '\0');
/// A chat packet behind other bytes shows that these have been dealt with.
const QByteArray chat = hex("4d0a000121");

/// A connected link with everything that it says written down.
struct Bench {
    PtyLine line;
    ConnectGX7100Serial link;
    QSignalSpy packet{&link, &ConnectGX7100::signalFrom};
    QSignalSpy status{&link, &ConnectGX7100::fxstatus};
    QSignalSpy disconnected{&link, &ConnectGX7100::disconnected};

    explicit Bench(SerialTimings timings = {}) : link(nullptr, timings) {
        link.Connect(line.portName());
    }

    QString statuses() const {
        QStringList result;
        for (const QList<QVariant>& arguments : status)
            result += arguments[0].toString() + ':' + arguments[1].toString();
        return result.join(' ');
    }
    QByteArrayList packets() const {
        QByteArrayList result;
        for (const QList<QVariant>& arguments : packet)
            result += QByteArray::fromStdString(arguments[0].value<std::string>());
        return result;
    }
    /// Waits until exactly `bytes` have arrived at the instrument since the last time.
    bool arrived(const QByteArray& bytes) {
        const bool all =
            QTest::qWaitFor([&] { return line.received().size() >= bytes.size(); }, patience);
        const bool same = all && line.received() == bytes;
        if (!same)
            qWarning() << "arrived" << line.received().toHex(' ') << "not" << bytes.toHex(' ');
        line.clear();
        return same;
    }
};

SerialTimings quick() {
    SerialTimings timings;
    timings.wakeUp = 5;
    timings.transfer = {60, 30};
    return timings;
}

} // namespace

void SerialTransferTest::what_starts_a_transfer_to_the_instrument_data() {
    QTest::addColumn<QByteArray>("request");
    QTest::newRow("K") << fromInstrument("K");
    QTest::newRow("Q") << fromInstrument("Q");
    QTest::newRow("K after others") << fromInstrument("MNOP\x06zK");
    QTest::newRow("nothing that decides") << fromInstrument("M");
    QTest::newRow("any other byte") << fromInstrument(QByteArray(1, '\0'));
}

void SerialTransferTest::what_starts_a_transfer_to_the_instrument() {
    QFETCH(const QByteArray, request);

    Bench bench;
    bench.link.slotTo(packetTo(QByteArray("FXTOID:CATCH\nh\0i", 16)));
    QVERIFY(bench.arrived(hex("590009") + "ID:CATCH\n"));
    QCOMPARE(bench.statuses(), QString());
    bench.line.write(request);
    QVERIFY(bench.arrived(toInstrument("\x05")));
    bench.line.write(fromInstrument("\x06"));
    QVERIFY(bench.arrived(gs + toInstrument(transferblock::build(1, QByteArray("h\0i", 3)))));
    bench.line.write(fromInstrument(QByteArray(1, '\0')));
    QVERIFY(bench.arrived(gs + toInstrument(transferblock::build(2, {}))));
    bench.line.write(fromInstrument(QByteArray(1, '\0')));
    QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), QStringLiteral("1:3 2:3 2:0 0:0"), patience);
    QCOMPARE(bench.packet.size(), 0);
}

void SerialTransferTest::without_a_file_nothing_starts_data() {
    QTest::addColumn<QByteArray>("request");
    QTest::newRow("K") << fromInstrument("K");
    QTest::newRow("Q") << fromInstrument("Q");
    QTest::newRow("others") << fromInstrument("MNOP\x06\x1dz");
    QTest::newRow("everything") << fromInstrument("MKQOQ");
}

void SerialTransferTest::without_a_file_nothing_starts() {
    QFETCH(const QByteArray, request);

    Bench bench;
    bench.line.write(request + chat);
    QTRY_COMPARE_WITH_TIMEOUT(bench.packet.size(), 1, patience);
    bench.link.Send(".");
    QVERIFY(bench.arrived("."));
    QCOMPARE(bench.statuses(), QString());
}

void SerialTransferTest::a_mark_too_late_is_no_file() {
    Bench bench;
    bench.link.slotTo(packetTo("FXTOID:123456\nCATCH\nfile"));
    QVERIFY(bench.arrived(hex("590014") + "ID:123456\nCATCH\nfile"));
    bench.line.write(fromInstrument("K") + chat);
    QTRY_COMPARE_WITH_TIMEOUT(bench.packet.size(), 1, patience);
    bench.link.Send(".");
    QVERIFY(bench.arrived("."));
    QCOMPARE(bench.statuses(), QString());
}

void SerialTransferTest::withdrawn_files_are_not_sent() {
    Bench bench;
    bench.link.slotTo(packetTo("FXTOCATCH\nold"));
    bench.link.withdrawFiles();
    QVERIFY(bench.arrived(hex("590006") + "CATCH\n"));
    bench.line.write(fromInstrument("K") + chat);
    QTRY_COMPARE_WITH_TIMEOUT(bench.packet.size(), 1, patience);
    bench.link.slotTo(packetTo("FXTOCATCH\n"));
    QVERIFY(bench.arrived(hex("590006") + "CATCH\n"));
    bench.line.write(fromInstrument("K"));
    QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), QStringLiteral("1:0"), patience);
}

void SerialTransferTest::what_starts_a_transfer_from_the_instrument_data() {
    QTest::addColumn<QByteArray>("request");
    QTest::newRow("ENQ") << fromInstrument("\x05");
    QTest::newRow("L") << fromInstrument("L");
    QTest::newRow("R") << fromInstrument("R");
    QTest::newRow("L after others") << fromInstrument("MNOP\x06\x1dzL");
}

void SerialTransferTest::what_starts_a_transfer_from_the_instrument() {
    QFETCH(const QByteArray, request);

    Bench bench;
    const QByteArray data("h\0i", 3);
    bench.line.write(request);
    QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), QStringLiteral("1:1000"), patience);
    QCOMPARE(bench.line.received(), "");
    bench.line.write(enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    bench.line.write(fromInstrument('\x1d' + transferblock::build(1, data)));
    QVERIFY(bench.arrived(toInstrument(QByteArray(1, '\0'))));
    // A block may come in any number of packets.
    const QByteArray last = '\x1d' + transferblock::build(2, {});
    for (const char byte : last)
        bench.line.write(fromInstrument(QByteArray(1, byte)));
    QVERIFY(bench.arrived(toInstrument(QByteArray(1, '\0'))));
    QTRY_COMPARE_WITH_TIMEOUT(bench.packets(), QByteArrayList{zeros + "FXFR" + data}, patience);
    QCOMPARE(bench.statuses(), QStringLiteral("1:1000 2:5 0:0"));
}

void SerialTransferTest::several_files_go_one_at_a_time() {
    Bench bench;
    bench.link.slotTo(packetTo("FXTOCATCH\none"));
    bench.link.slotTo(packetTo("FXTOCATCH\nsecond"));
    QVERIFY(bench.arrived((hex("590006") + "CATCH\n").repeated(2)));
    QString expected;
    for (const QByteArray& file : {QByteArray("one"), QByteArray("second")}) {
        bench.line.write(fromInstrument("K"));
        QVERIFY(bench.arrived(toInstrument("\x05")));
        bench.line.write(fromInstrument("\x06"));
        QVERIFY(bench.arrived(gs + toInstrument(transferblock::build(1, file))));
        bench.line.write(fromInstrument("\x02"));
        expected += QStringLiteral("1:%1 0:-3 ").arg(file.size());
        QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), expected.trimmed(), patience);
    }
    bench.line.write(fromInstrument("K") + chat);
    QTRY_COMPARE_WITH_TIMEOUT(bench.packet.size(), 1, patience);
    QCOMPARE(bench.statuses(), expected.trimmed());
}

void SerialTransferTest::a_failed_file_is_no_packet() {
    Bench bench;
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    bench.line.write(fromInstrument('\x1d' + transferblock::build(1, "hi")) +
                     fromInstrument('\x1d' + transferblock::build(3, "yo")) + chat);
    QVERIFY(bench.arrived(toInstrument(QByteArray(1, '\0')) + toInstrument("\x04")));
    QTRY_COMPARE_WITH_TIMEOUT(bench.packets(), QByteArrayList{zeros + "CHAT!"}, patience);
    QCOMPARE(bench.statuses(), QStringLiteral("1:1000 2:4 0:-5"));
}

void SerialTransferTest::an_instrument_that_never_answers() {
    Bench bench(quick());
    bench.link.slotTo(packetTo("FXTOCATCH\nhi"));
    QVERIFY(bench.arrived(hex("590006") + "CATCH\n"));
    bench.line.write(fromInstrument("K"));
    QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), QStringLiteral("1:2 0:-1"), patience);
    QVERIFY(bench.arrived(toInstrument("\x05").repeated(6)));

    bench.status.clear();
    bench.line.write(fromInstrument("L"));
    QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), QStringLiteral("1:1000 0:-1"), patience);
    QCOMPARE(bench.line.received(), "");
    QCOMPARE(bench.packet.size(), 0);
}

void SerialTransferTest::packets_wait_for_the_end_of_a_transfer() {
    Bench bench;
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    bench.line.write(chat);
    bench.link.Send("first;");
    bench.link.Send("second;");
    bench.line.write(fromInstrument('\x1d' + transferblock::build(1, {})) + hex("560a000176"));
    QVERIFY(bench.arrived(toInstrument(QByteArray(1, '\0')) + "first;second;"));
    QTRY_COMPARE_WITH_TIMEOUT(bench.packets(),
                              (QByteArrayList{zeros + "FXFR", zeros + "CHAT!", zeros + "VARSv"}),
                              patience);
}

void SerialTransferTest::the_order_of_a_pass() {
    Bench bench;
    QStringList order;
    connect(&bench.link, &ConnectGX7100::signalFrom, this, [&order](const std::string& packet) {
        order += QString::fromStdString(packet.substr(4));
    });
    connect(&bench.link, &ConnectGX7100::fxstatus, this,
            [&order](int status, int) { order += QString::number(status); });
    bench.link.slotTo(packetTo("FXTOCATCH\nhi"));
    QVERIFY(bench.arrived(hex("590006") + "CATCH\n"));
    // Packets come before the transfer that was asked for ahead of them, and their own after it.
    bench.line.write(fromInstrument("K") + chat);
    QVERIFY(bench.arrived(toInstrument("\x05")));
    bench.line.write(hex("560a000176") + fromInstrument("\x06"));
    QVERIFY(bench.arrived(gs + toInstrument(transferblock::build(1, "hi"))));
    bench.line.write(fromInstrument("\x02"));
    QTRY_COMPARE_WITH_TIMEOUT(order, (QStringList{"CHAT!", "1", "0", "VARSv"}), patience);
}

void SerialTransferTest::one_string_goes_out_a_pass() {
    Bench bench;
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    // Queued during one transfer, while the next is already asked for: between the two there is
    // room for one.
    for (const char* text : {"first;", "second;", "third;"})
        bench.link.Send(text);
    const QByteArray end = fromInstrument('\x1d' + transferblock::build(1, {}));
    const QByteArray done = toInstrument(QByteArray(1, '\0'));
    bench.line.write(end + fromInstrument("L") + enq);
    QVERIFY(bench.arrived(done + "first;" + toInstrument("\x06")));
    bench.line.write(end + fromInstrument("L") + enq);
    QVERIFY(bench.arrived(done + "second;" + toInstrument("\x06")));
    bench.line.write(end);
    QVERIFY(bench.arrived(done + "third;"));
}

void SerialTransferTest::stop_while_receiving() {
    Bench bench;
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    bench.line.write(fromInstrument('\x1d' + transferblock::build(1, "hi")));
    QVERIFY(bench.arrived(toInstrument(QByteArray(1, '\0'))));
    // It waits ten seconds for the next block; a stop does not.
    bench.link.stopXfer();
    QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), QStringLiteral("1:1000 2:4 0:-3"), patience / 4);
    QVERIFY(bench.arrived(hex("590001") + "L"));
    QCOMPARE(bench.packet.size(), 0);
    // The next transfer starts with a clean slate.
    bench.line.write(fromInstrument("R") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
}

void SerialTransferTest::stop_while_sending() {
    Bench bench;
    bench.link.slotTo(packetTo("FXTOCATCH\nhi"));
    QVERIFY(bench.arrived(hex("590006") + "CATCH\n"));
    bench.line.write(fromInstrument("K"));
    QVERIFY(bench.arrived(toInstrument("\x05")));
    bench.line.write(fromInstrument("\x06"));
    QVERIFY(bench.arrived(gs + toInstrument(transferblock::build(1, "hi"))));
    bench.link.stopXfer();
    QTRY_COMPARE_WITH_TIMEOUT(bench.statuses(), QStringLiteral("1:2 0:-2"), patience / 4);
    QVERIFY(bench.arrived(hex("590001") + "L"));
}

void SerialTransferTest::stop_drops_what_is_queued_for_output() {
    Bench bench;
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    // Nothing queued goes out while a transfer runs.
    for (int i = 0; i < 10; ++i)
        bench.link.Send("lost;");
    bench.link.stopXfer();
    bench.link.Send("after;");
    QVERIFY(bench.arrived(hex("590001") + "Lafter;"));
    QCOMPARE(bench.statuses(), QStringLiteral("1:1000 0:-3"));
}

void SerialTransferTest::stop_without_a_transfer() {
    Bench bench;
    bench.link.stopXfer();
    QVERIFY(bench.arrived(hex("590001") + "L"));
    QCOMPARE(bench.statuses(), QString());
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
}

void SerialTransferTest::what_is_left_of_an_aborted_block_starts_nothing() {
    Bench bench;
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    // File data look like requests; half of this block has arrived when the operator stops.
    const QByteArray packet =
        fromInstrument('\x1d' + transferblock::build(1, QByteArray("LLRR\x05KQ").repeated(100)));
    bench.line.write(packet.first(300));
    QTest::qWait(20);
    bench.link.stopXfer();
    QVERIFY(bench.arrived(hex("590001") + "L"));
    // The next block may be on its way already.
    bench.line.write(packet.sliced(300) + packet + chat);
    QTRY_COMPARE_WITH_TIMEOUT(bench.packet.size(), 1, patience);
    bench.link.Send(".");
    QVERIFY(bench.arrived("."));
    QCOMPARE(bench.statuses(), QStringLiteral("1:1000 0:-3"));
}

void SerialTransferTest::disconnect_ends_a_transfer() {
    Bench bench;
    bench.line.write(fromInstrument("L") + enq);
    QVERIFY(bench.arrived(toInstrument("\x06")));
    bench.link.Disconnect();
    QTRY_COMPARE_WITH_TIMEOUT(bench.disconnected.size(), 1, patience / 4);
    QCOMPARE(bench.statuses(), QStringLiteral("1:1000 0:-3"));
    QCOMPARE(bench.packet.size(), 0);
}

void SerialTransferTest::a_lost_line_ends_a_transfer() {
    Bench bench;
    bench.link.slotTo(packetTo("FXTOCATCH\nhi"));
    QVERIFY(bench.arrived(hex("590006") + "CATCH\n"));
    bench.line.write(fromInstrument("K"));
    QVERIFY(bench.arrived(toInstrument("\x05")));
    bench.line.unplug();
    QTRY_COMPARE_WITH_TIMEOUT(bench.disconnected.size(), 1, patience / 4);
    QCOMPARE(bench.statuses(), QStringLiteral("1:2 0:-2"));
}

void SerialTransferTest::deletion_ends_a_transfer() {
    PtyLine line;
    SerialTimings timings;
    timings.wakeUp = 3600000;
    auto link = std::make_unique<ConnectGX7100Serial>(nullptr, timings);
    QSignalSpy status(link.get(), &ConnectGX7100::fxstatus);
    link->Connect(line.portName());
    line.write(fromInstrument("L") + enq);
    QTRY_COMPARE_WITH_TIMEOUT(line.received(), toInstrument("\x06"), patience);
    // It waits for the worker, which would sleep for an hour if nobody woke it.
    link.reset();
    line.clear();
    line.write(enq);
    QCoreApplication::processEvents();
    QCOMPARE(line.received(), "");
}

int main(int argc, char** argv) {
    return runTest<SerialTransferTest>(argc, argv);
}

#include "SerialTransferTest.moc"
