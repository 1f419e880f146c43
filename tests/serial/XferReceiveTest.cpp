#include "ByteArrayXfer.h"
#include "ScriptedHost.h"
#include "TestEnvironment.h"
#include "TransferBlock.h"

/// A file from the instrument, as a dialogue: what the instrument sends, what it is answered.
class XferReceiveTest : public QObject {
    Q_OBJECT

private slots:
    void dialogue_data();
    void dialogue();
    void every_truncation_times_out_and_every_abort_is_told();
    void every_single_bit_error_in_a_block_is_refused_or_ends_it();
    void lengths_data();
    void lengths();
    void a_file_that_cannot_be_stored();
    void failing_writes();
    void waits_as_long_as_it_is_told();
    void received_bytes_are_appended();
    void numbers_do_not_wrap();
    void error_texts_data();
    void error_texts();
    void host_results_data();
    void host_results();
};

namespace {

constexpr int timeout = XferHost::timedOut;
constexpr int aborted = XferHost::aborted;

QList<int> bytes(const char* hex) {
    QList<int> result;
    for (const char byte : QByteArray::fromHex(hex))
        result.append(static_cast<unsigned char>(byte));
    return result;
}

QList<int> times(int count, const QList<int>& list) {
    QList<int> result;
    for (int i = 0; i < count; ++i)
        result += list;
    return result;
}

/// A sound block with its block-start byte.
QByteArray block(unsigned int number, const QByteArray& data) {
    return '\x1d' + transferblock::build(number, data);
}

} // namespace

void XferReceiveTest::dialogue_data() {
    QTest::addColumn<QList<int>>("reads");
    QTest::addColumn<QByteArray>("sent");
    QTest::addColumn<int>("result");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QStringList>("texts");
    QTest::addColumn<QStringList>("progress");

    const QList<int> enq{5};
    const QList<int> hi = bytes("1d 0001 0004 6869 078d");
    const QList<int> damagedHi = bytes("1d 0001 0004 6869 078c");
    const QList<int> yo = bytes("1d 0002 0004 796f b9db");
    const QList<int> ok3 = bytes("1d 0003 0004 6f6b fadb");
    const QList<int> no4 = bytes("1d 0004 0004 6e6f eeba");
    const QList<int> end1 = bytes("1d 0001 0002 93b2");
    const QList<int> end2 = bytes("1d 0002 0002 cae2");
    const QList<int> end3 = bytes("1d 0003 0002 fdd2");
    const QString bad = QStringLiteral("Checksum error");

    const auto row = [](const char* name, const QList<int>& reads, const char* sent, int result,
                        const char* file, const QStringList& texts, const QStringList& progress) {
        QTest::newRow(name) << reads << QByteArray::fromHex(sent) << result << QByteArray(file)
                            << texts << progress;
    };

    row("an empty file", enq + end1, "06 00", 0, "", {}, {});
    row("two bytes", enq + hi + end2, "06 00 00", 0, "hi", {}, {"1:4"});
    row("two blocks", enq + hi + yo + end3, "06 00 00 00", 0, "hiyo", {}, {"1:4", "2:4"});

    // Waiting for ENQ
    row("other bytes before ENQ", QList<int>{76, 0, 6, 29, 255} + enq + end1, "06 00", 0, "", {},
        {});
    row("five time-outs before ENQ", times(5, {timeout}) + enq + end1, "06 00", 0, "", {}, {});
    row("six time-outs", times(6, {timeout}) + enq + end1, "", -1, "",
        {"Timed out waiting for GX-7100"}, {});
    row("other bytes do not reset the count",
        times(3, {timeout}) + QList<int>{1} + times(3, {timeout}) + enq, "", -1, "",
        {"Timed out waiting for GX-7100"}, {});
    row("abort before ENQ", {aborted}, "", -3, "", {"GX-7100 aborted"}, {});

    // Between blocks
    row("ENQ again is skipped", times(3, enq) + end1, "06 00", 0, "", {}, {});
    row("other bytes between blocks", enq + bytes("00 06 ff") + hi + bytes("05 1c 1e") + end2,
        "06 00 00", 0, "hi", {}, {"1:4"});
    row("no block", enq + QList<int>{timeout}, "06", -1, "", {"Timeout"}, {});
    row("no second block", enq + hi + QList<int>{timeout}, "06 00", -1, "hi", {"Timeout"}, {"1:4"});
    row("abort between blocks", enq + hi + QList<int>{aborted}, "06 00", -3, "hi", {"Abort"},
        {"1:4"});

    // Damage
    row("one checksum error", enq + damagedHi + hi + end2, "06 01 00 00", 0, "hi", {bad}, {"1:4"});
    row("five checksum errors", enq + times(5, damagedHi) + hi + end2, "06 01 01 01 01 01 00 00", 0,
        "hi", QStringList(5, bad), {"1:4"});
    row("six checksum errors", enq + times(6, damagedHi) + hi + end2, "06 01 01 01 01 01 01", -4,
        "", QStringList(6, bad), {});
    row("failures add up over all blocks",
        enq + times(3, damagedHi) + hi + times(3, bytes("1d 0002 0002 cae3")) + end2,
        "06 01 01 01 00 01 01 01", -4, "hi", QStringList(6, bad), {"1:4"});
    row("a damaged number", enq + bytes("1d 0101 0004 6869 078d") + hi + end2, "06 01 00 00", 0,
        "hi", {bad}, {"1:4"});

    // Sequence
    row("blocks 1, 2, 4", enq + hi + yo + no4, "06 00 00 04", -5, "hiyo", {"Packet dropped"},
        {"1:4", "2:4"});
    row("a block again", enq + hi + hi, "06 00 04", -5, "hi", {"Packet dropped"}, {"1:4"});
    row("begins with block 0", enq + bytes("1d 0000 0002 a482"), "06 04", -5, "",
        {"Packet dropped"}, {});
    row("begins with block 2", enq + yo, "06 04", -5, "", {"Packet dropped"}, {});
    row("a damaged block does not count as received",
        enq + hi + bytes("1d 0002 0004 796f b9da") + yo + ok3 + bytes("1d 0004 0002 7842"),
        "06 00 01 00 00 00", 0, "hiyook", {bad}, {"1:4", "2:4", "3:4"});

    // Data that looks like protocol
    row("control bytes in the data", enq + bytes("1d 0001 0006 001d05ff a4ed") + end2, "06 00 00",
        0, nullptr, {}, {"1:6"});
}

void XferReceiveTest::dialogue() {
    QFETCH(const QList<int>, reads);
    QFETCH(const QByteArray, sent);
    QFETCH(const int, result);
    QFETCH(QByteArray, file);
    QFETCH(const QStringList, texts);
    QFETCH(const QStringList, progress);
    if (file.isNull())
        file = QByteArray("\x00\x1d\x05\xff", 4);

    ScriptedHost host;
    host.willRead(reads);
    QByteArray received;
    ByteArrayXfer transfer(&host, nullptr);
    QCOMPARE(transfer.Receive(&received), result);
    QCOMPARE(host.sent(), sent);
    QCOMPARE(received, file);
    QCOMPARE(host.texts(), texts);
    QCOMPARE(host.progress(), progress);
    QCOMPARE(host.writes().size(), sent.size());
}

void XferReceiveTest::every_truncation_times_out_and_every_abort_is_told() {
    const QList<int> stream = bytes("05 1d 0001 0004 6869 078d 1d 0002 0002 cae2");
    for (qsizetype size = 1; size < stream.size(); ++size) {
        for (const int end : {timeout, aborted}) {
            ScriptedHost host;
            host.willRead(stream.first(size) + QList<int>{end});
            QByteArray received;
            ByteArrayXfer transfer(&host, nullptr);
            QCOMPARE(transfer.Receive(&received), end == timeout ? -1 : -3);
            QCOMPARE(host.texts(), QStringList(end == timeout ? "Timeout" : "Abort"));
            QCOMPARE(received, size < 10 ? QByteArray() : QByteArray("hi"));
            QCOMPARE(host.readsLeft(), 0);
        }
    }
}

void XferReceiveTest::every_single_bit_error_in_a_block_is_refused_or_ends_it() {
    const QByteArray sound = block(1, QByteArray("\x00hello\xff\x1d", 8));
    for (qsizetype bit = 8; bit < sound.size() * 8; ++bit) {
        QByteArray damaged = sound;
        damaged[bit / 8] = static_cast<char>(damaged[bit / 8] ^ (1 << (bit % 8)));
        ScriptedHost host;
        host.willRead("\x05" + damaged);
        QByteArray received;
        ByteArrayXfer transfer(&host, nullptr);
        QCOMPARE(transfer.Receive(&received), -1);
        QCOMPARE(received, QByteArray());
        QVERIFY(!host.sent().contains('\0'));
    }
}

void XferReceiveTest::lengths_data() {
    QTest::addColumn<QByteArray>("block");
    QTest::addColumn<bool>("sound");

    for (const int size : {0, 1, 1019, 1020})
        QTest::addRow("%d data bytes", size) << block(1, QByteArray(size, 'd')) << true;
    for (const int size : {1021, 1022, 1023, 2000, 65532, 65533})
        QTest::addRow("%d data bytes", size) << block(1, QByteArray(size, 'd')) << false;
    // Without room for a checksum, yet the check comes out right.
    QTest::newRow("length 0") << QByteArray::fromHex("1dffff0000") << false;
    QTest::newRow("length 1") << QByteArray::fromHex("1d01350001cc") << false;
}

void XferReceiveTest::lengths() {
    QFETCH(const QByteArray, block);
    QFETCH(const bool, sound);

    ScriptedHost host;
    host.willRead("\x05" + block);
    QByteArray received;
    ByteArrayXfer transfer(&host, nullptr);
    const bool empty = sound && block.size() == 7;
    QCOMPARE(transfer.Receive(&received), empty ? 0 : -1);
    QCOMPARE(host.sent(), QByteArray::fromHex(sound ? "0600" : "0601"));
    QCOMPARE(received, sound ? block.sliced(5).chopped(2) : QByteArray());
    QCOMPARE(host.texts().contains(QStringLiteral("Checksum error")), !sound);
    // All of it is read, whatever it is worth.
    QCOMPARE(host.readsLeft(), 0);
}

void XferReceiveTest::a_file_that_cannot_be_stored() {
    class Full : public XferClass {
    public:
        using XferClass::XferClass;
        int Source() override { return -1; }
        int Dest(char byte) override {
            stored += byte;
            return stored.size() < 3 ? 0 : -1;
        }
        QByteArray stored;
    };
    ScriptedHost host;
    host.willRead("\x05" + block(1, "hi") + block(2, "yo") + block(3, {}));
    Full transfer(&host, nullptr);
    QCOMPARE(transfer.Receive(), -3);
    QCOMPARE(host.sent(), QByteArray::fromHex("06 00 00 02"));
    QCOMPARE(transfer.stored, "hiy");
    QCOMPARE(host.texts(), QStringList("Write failure to dest"));
    QCOMPARE(host.progress(), QStringList("1:4"));
}

void XferReceiveTest::failing_writes() {
    for (const int failure : {-1, -2}) {
        ScriptedHost host;
        host.willRead("\x05" + block(1, "hi"));
        host.writesFailFrom(0, failure);
        QByteArray received;
        ByteArrayXfer transfer(&host, nullptr);
        QCOMPARE(transfer.Receive(&received), failure);
        QCOMPARE(host.readTimeouts().size(), 1);
        QCOMPARE(received, QByteArray());
    }
}

void XferReceiveTest::waits_as_long_as_it_is_told() {
    const QList<int> reads = QList<int>{timeout} + bytes("05 1d 0001 0003 61");
    for (const XferTimeouts& timeouts : {XferTimeouts(), XferTimeouts{70, 20}}) {
        ScriptedHost host;
        host.willRead(reads);
        QByteArray received;
        ByteArrayXfer transfer(&host, nullptr, timeouts);
        QCOMPARE(transfer.Receive(&received), -1);
        const long packet = timeouts.packet;
        const long character = timeouts.character;
        // ENQ twice, block start, four header bytes; then the bytes inside the block.
        QCOMPARE(host.readTimeouts(), QList<long>(7, packet) + QList<long>({character, character}));
        QCOMPARE(host.writeTimeouts(), QList<long>({packet}));
    }
    QCOMPARE(XferTimeouts().packet, 10000);
    QCOMPARE(XferTimeouts().character, 1000);
}

void XferReceiveTest::received_bytes_are_appended() {
    ScriptedHost host;
    host.willRead("\x05" + block(1, "hi") + block(2, {}));
    QByteArray received("before ");
    ByteArrayXfer transfer(&host, nullptr);
    QCOMPARE(transfer.Receive(&received), 0);
    QCOMPARE(received, "before hi");
}

void XferReceiveTest::numbers_do_not_wrap() {
    ScriptedHost host;
    host.willRead(QByteArray("\x05"));
    for (unsigned int number = 1; number <= 65536; ++number)
        host.willRead(block(number, "x"));
    QByteArray received;
    ByteArrayXfer transfer(&host, nullptr);
    QCOMPARE(transfer.Receive(&received), -5);
    QCOMPARE(received.size(), 65535);
    QCOMPARE(host.progress().last(), QStringLiteral("65535:3"));
}

void XferReceiveTest::error_texts_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");

    QTest::newRow("success") << 0 << QString();
    QTest::newRow("time-out") << -1 << QStringLiteral("Timeout");
    QTest::newRow("abort here") << -2 << QStringLiteral("Abort");
    QTest::newRow("abort there") << -3 << QStringLiteral("Abort");
    QTest::newRow("retries") << -4 << QStringLiteral("Too Noisy");
    QTest::newRow("sequence") << -5 << QStringLiteral("Dropped Packet");
    QTest::newRow("-6") << -6 << QStringLiteral("ERROR @1");
    QTest::newRow("1") << 1 << QStringLiteral("ERROR @1");
}

void XferReceiveTest::error_texts() {
    QFETCH(const int, code);
    QFETCH(const QString, text);
    QCOMPARE(XferClass::ErrorText(code), text);
}

void XferReceiveTest::host_results_data() {
    QTest::addColumn<int>("result");
    QTest::addColumn<int>("error");

    QTest::newRow("0xFFFE") << 0xFFFE << -2;
    QTest::newRow("0xFFFF") << 0xFFFF << -1;
    for (const int result : {0, 1, 6, 255, -3, -32768, 32767})
        QTest::addRow("%d", result) << result << 0;
}

void XferReceiveTest::host_results() {
    QFETCH(const int, result);
    QFETCH(const int, error);
    QCOMPARE(XferClass::ConvertError(static_cast<short>(result)), error);
}

int main(int argc, char** argv) {
    return runTest<XferReceiveTest>(argc, argv);
}

#include "XferReceiveTest.moc"
