#include "ByteArrayXfer.h"
#include "ScriptedHost.h"
#include "TestEnvironment.h"
#include "TransferBlock.h"

/// A file to the instrument, as a dialogue: what the instrument answers, what it is sent.
class XferSendTest : public QObject {
    Q_OBJECT

private slots:
    void dialogue_data();
    void dialogue();
    void failing_writes_data();
    void failing_writes();
    void sizes_data();
    void sizes();
    void waits_as_long_as_it_is_told();
    void waits_ten_seconds_and_one();
    void a_source_that_never_ends_is_cut_by_the_instrument();
};

namespace {

constexpr int ack = 6;
constexpr int timeout = XferHost::timedOut;
constexpr int aborted = XferHost::aborted;

const QString enq = QStringLiteral("05");
const QString gs = QStringLiteral("1d");
const QString block1Hi = QStringLiteral("000100046869078d");
const QString block1Empty = QStringLiteral("0001000293b2");
const QString block2Empty = QStringLiteral("00020002cae2");
const QString retrying = QStringLiteral("Transmission problem - retrying");
const QString lostData = QStringLiteral("Lost Data");

QStringList times(qsizetype count, const QStringList& list) {
    QStringList result;
    for (int i = 0; i < count; ++i)
        result += list;
    return result;
}

QList<int> times(int count, int value) {
    return QList<int>(count, value);
}

} // namespace

void XferSendTest::dialogue_data() {
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QList<int>>("reads");
    QTest::addColumn<QStringList>("writes");
    QTest::addColumn<int>("result");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QStringList>("progress");

    const QStringList hiBlock{gs, block1Hi};
    const QStringList hiStart = QStringList{enq} + hiBlock;
    const QStringList end{gs, block2Empty};

    const auto row = [](const char* name, const char* file, const QList<int>& reads,
                        const QStringList& writes, int result, const QStringList& texts,
                        const QStringList& progress) {
        QTest::newRow(name) << QByteArray(file) << reads << writes << result << texts << progress;
    };

    row("an empty file", "", {ack, 0}, {enq, gs, block1Empty}, 0, {}, {"1:0"});
    row("two bytes", "hi", {ack, 0, 0}, hiStart + end, 0, {}, {"1:2", "2:0"});

    // Handshake
    row("abort while waiting for ACK", "hi", {aborted}, {enq}, -2, {}, {});
    row("other bytes before ACK", "hi", {5, 0, 21, 255, ack, 0, 0}, hiStart + end, 0, {},
        {"1:2", "2:0"});
    row("abort after other bytes", "hi", {5, 0, aborted}, {enq}, -2, {}, {});
    row("ACK after one time-out", "hi", {timeout, ack, 0, 0}, QStringList{enq} + hiStart + end, 0,
        {}, {"1:2", "2:0"});
    row("ACK after five time-outs", "hi", times(5, timeout) + QList<int>{ack, 0, 0},
        times(5, {enq}) + hiStart + end, 0, {}, {"1:2", "2:0"});
    row("six time-outs", "hi", times(6, timeout) + QList<int>{ack, 0, 0}, times(6, {enq}), -1, {},
        {});
    row("other bytes do not reset the count", "hi",
        times(3, timeout) + QList<int>{1} + times(3, timeout), times(6, {enq}), -1, {}, {});

    // Reply 1
    row("one checksum error", "hi", {ack, 1, 0, 0}, hiStart + hiBlock + end, 0, {retrying},
        {"1:2", "2:0"});
    row("five checksum errors", "hi", QList<int>{ack} + times(5, 1) + QList<int>{0, 0},
        hiStart + times(5, hiBlock) + end, 0, times(5, {retrying}), {"1:2", "2:0"});
    row("six checksum errors", "hi", QList<int>{ack} + times(6, 1), hiStart + times(5, hiBlock), -4,
        times(5, {retrying}) + QStringList{"Too many failures"}, {});
    row("retries start anew with each block", "hi",
        QList<int>{ack} + times(5, 1) + QList<int>{0} + times(5, 1) + QList<int>{0},
        hiStart + times(5, hiBlock) + times(6, end), 0, times(10, {retrying}), {"1:2", "2:0"});
    row("six checksum errors of the last block", "hi", QList<int>{ack, 0} + times(6, 1),
        hiStart + times(6, end), -4, times(5, {retrying}) + QStringList{"Too many failures"},
        {"1:2"});

    // Reply 2
    row("the instrument aborts", "hi", {ack, 2}, hiStart, -3, {"GX-7100 aborted transmission."},
        {});
    row("the instrument aborts at the last block", "hi", {ack, 0, 2}, hiStart + end, -3,
        {"GX-7100 aborted transmission."}, {"1:2"});

    // Reply 3
    row("one short block", "hi", {ack, 3, 0, 0}, hiStart + hiBlock + end, 0, {}, {"1:2", "2:0"});
    row("five short blocks", "hi", QList<int>{ack} + times(5, 3) + QList<int>{0, 0},
        hiStart + times(5, hiBlock) + end, 0, {}, {"1:2", "2:0"});
    row("six short blocks end in success", "hi", QList<int>{ack} + times(6, 3),
        hiStart + times(5, hiBlock), 0, {"Short count"}, {});
    row("short blocks and checksum errors share the count", "hi", {ack, 3, 1, 3, 1, 3, 1},
        hiStart + times(5, hiBlock), -4, {retrying, retrying, "Too many failures"}, {});
    row("the last one decides", "hi", {ack, 1, 3, 1, 3, 1, 3}, hiStart + times(5, hiBlock), 0,
        {retrying, retrying, retrying, "Short count"}, {});

    // Reply 4
    row("a block out of sequence", "hi", {ack, 4}, hiStart, -5,
        {"GX-7100 reports a dropped packet."}, {});

    // No reply
    row("other bytes instead of a reply", "hi", {ack, 5, 6, 255, 0, 0}, hiStart + end, 0,
        {lostData, lostData, lostData}, {"1:2", "2:0"});
    row("no reply", "hi", {ack, timeout}, hiStart, -1, {"GX-7100 not responding"}, {});
    row("no reply after other bytes", "hi", {ack, 77, timeout}, hiStart, -1,
        {lostData, "GX-7100 not responding"}, {});
    row("abort while waiting for a reply", "hi", {ack, aborted}, hiStart, -2, {"Aborted"}, {});
    row("abort while waiting for the last reply", "hi", {ack, 0, aborted}, hiStart + end, -2,
        {"Aborted"}, {"1:2"});
}

void XferSendTest::dialogue() {
    QFETCH(QByteArray, file);
    QFETCH(const QList<int>, reads);
    QFETCH(const QStringList, writes);
    QFETCH(const int, result);
    QFETCH(const QStringList, texts);
    QFETCH(const QStringList, progress);

    ScriptedHost host;
    host.willRead(reads);
    ByteArrayXfer transfer(&host, nullptr);
    QCOMPARE(transfer.Send(&file), result);
    QCOMPARE(host.writes(), writes);
    QCOMPARE(host.texts(), texts);
    QCOMPARE(host.progress(), progress);
}

void XferSendTest::failing_writes_data() {
    QTest::addColumn<QList<int>>("reads");
    QTest::addColumn<int>("firstFailure");
    QTest::addColumn<int>("writesDone");

    QTest::newRow("ENQ") << QList<int>{} << 0 << 0;
    QTest::newRow("ENQ again") << QList<int>{timeout} << 1 << 1;
    QTest::newRow("block start") << QList<int>{ack} << 1 << 1;
    QTest::newRow("block") << QList<int>{ack} << 2 << 2;
    QTest::newRow("block start again") << QList<int>{ack, 3} << 3 << 3;
    QTest::newRow("last block start") << QList<int>{ack, 0} << 3 << 3;
    QTest::newRow("last block") << QList<int>{ack, 0} << 4 << 4;
}

void XferSendTest::failing_writes() {
    QFETCH(const QList<int>, reads);
    QFETCH(const int, firstFailure);
    QFETCH(const int, writesDone);

    for (const int failure : {-1, -2}) {
        ScriptedHost host;
        host.willRead(reads);
        host.writesFailFrom(firstFailure, failure);
        QByteArray file("hi");
        ByteArrayXfer transfer(&host, nullptr);
        QCOMPARE(transfer.Send(&file), failure);
        QCOMPARE(transfer.ErrorText(), QString::fromLatin1(failure == -1 ? "Timeout" : "Abort"));
        QCOMPARE(host.writes().size(), writesDone);
        QCOMPARE(host.texts(), QStringList());
    }
}

void XferSendTest::sizes_data() {
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 255, 256, 1019, 1020, 1021, 2039, 2040, 2041, 100000})
        QTest::addRow("%d", size) << size;
}

void XferSendTest::sizes() {
    QFETCH(const int, size);
    QByteArray file(size, '\0');
    for (int i = 0; i < size; ++i)
        file[i] = static_cast<char>(i * 31 + i / 256);

    QByteArray expected("\x05");
    QStringList progress;
    int number = 0;
    QByteArray data;
    do {
        data = file.mid(qsizetype{1020} * number, 1020);
        ++number;
        expected += '\x1d' + transferblock::build(static_cast<unsigned int>(number), data);
        progress += QStringLiteral("%1:%2").arg(number).arg(data.size());
    } while (!data.isEmpty());
    QCOMPARE(number, (size + 1019) / 1020 + 1);

    ScriptedHost host;
    host.willRead(QList<int>{ack});
    host.willRead(QList<int>(number, 0));
    ByteArrayXfer transfer(&host, nullptr);
    QCOMPARE(transfer.Send(&file), 0);
    QCOMPARE(host.sent(), expected);
    QCOMPARE(host.progress(), progress);
    QCOMPARE(host.readsLeft(), 0);
}

void XferSendTest::waits_as_long_as_it_is_told() {
    ScriptedHost host;
    host.willRead({timeout, ack, 77, 0, 0});
    QByteArray file("hi");
    ByteArrayXfer transfer(&host, nullptr, XferTimeouts{70, 20});
    QCOMPARE(transfer.Send(&file), 0);
    QCOMPARE(host.readTimeouts(), QList<long>({20, 20, 70, 70, 70}));
    QCOMPARE(host.writeTimeouts(), QList<long>({70, 70, 70, 70}));
}

void XferSendTest::waits_ten_seconds_and_one() {
    ScriptedHost host;
    host.willRead({timeout, ack, 0, 0});
    QByteArray file("hi");
    ByteArrayXfer transfer(&host, nullptr);
    QCOMPARE(transfer.Send(&file), 0);
    QCOMPARE(host.readTimeouts(), QList<long>({1000, 1000, 10000, 10000}));
    QCOMPARE(host.writeTimeouts(), QList<long>({10000, 10000, 10000, 10000}));
}

void XferSendTest::a_source_that_never_ends_is_cut_by_the_instrument() {
    class Endless : public XferClass {
    public:
        using XferClass::XferClass;
        int Source() override { return 0; }
        int Dest(char /*byte*/) override { return -1; }
    };
    ScriptedHost host;
    host.willRead({ack, 0, 0, 0, 2});
    Endless transfer(&host, nullptr);
    QCOMPARE(transfer.Send(), -3);
    QCOMPARE(transfer.ErrorText(), QStringLiteral("Abort"));
    QCOMPARE(host.progress(), QStringList({"1:1020", "2:1020", "3:1020"}));
}

int main(int argc, char** argv) {
    return runTest<XferSendTest>(argc, argv);
}

#include "XferSendTest.moc"
