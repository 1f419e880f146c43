#include "LTermBuffer.h"
#include "TestEnvironment.h"

#include <random>

/// Bytes as an instrument sends them in; packets and file-transfer bytes out.
class LTermBufferTest : public QObject {
    Q_OBJECT

private slots:
    void packets_data();
    void packets();
    void every_split_and_every_truncation();
    void single_bytes_data() { packets_data(); }
    void single_bytes();
    void every_type_letter_and_no_other();
    void lengths_data();
    void lengths();
    void packets_are_queued_in_order();
    void a_flood_keeps_the_newest_packets_data();
    void a_flood_keeps_the_newest_packets();
    void an_empty_queue_gives_nothing();
    void start_of_a_transfer_data();
    void start_of_a_transfer();
    void dropped_transfer_bytes();
    void what_ends_the_dropping();
    void runs_of_garbage_and_packets_do_not_depend_on_the_chunks();
};

namespace {

/// All packets as text, "T:payload;", then "|" and the file-transfer bytes.
QByteArray drain(LTermBuffer& buffer) {
    QByteArray result;
    unsigned char type = 0;
    std::string payload;
    while (buffer.nextItem(type, payload))
        result +=
            QByteArray(1, static_cast<char>(type)) + ':' + QByteArray::fromStdString(payload) + ';';
    result += '|';
    while (buffer.hasFX())
        result += static_cast<char>(buffer.GetFX());
    return result;
}

void add(LTermBuffer& buffer, const QByteArray& bytes) {
    buffer.Add(bytes.data(), static_cast<unsigned int>(bytes.size()));
}

} // namespace

void LTermBufferTest::packets_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("result");

    const auto row = [](const char* name, const char* hex, const QByteArray& result) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << result;
    };
    row("nothing", "", "|");
    row("an unknown letter before a packet", "5a 41 0a 0002 6869", "A:hi;|");
    row("a text page", "54 0a 0003 616263", "T:abc;|");
    row("any payload values", "4d 0a 0004 00 0a 41 ff", QByteArray("M:\0\nA\xFF;|", 8));
    row("no resynchronisation on a second letter", "41 41 0a 0002 6869", "|");
    row("the packet after a lost one", "41 41 0a 0002 6869 43 0a 0001 78", "C:x;|");
    row("a letter in the lost packet is a type", "41 41 0a 0002 43 0a 0001 78", "C:x;|");
    row("a letter in front of a line feed", "41 43 0a 0001 78 54 0a 0001 79", "T:y;|");
    row("a letter, something else, a line feed", "41 20 0a 0002 6869", "|");
    row("a line feed alone", "0a 41 0a 0001 78", "A:x;|");
    row("a length of 0", "41 0a 0000", "|");
    row("a length of 0, then a packet", "41 0a 0000 43 0a 0001 78", "C:x;|");
    row("a length of 0 for file transfer", "58 0a 0000 41 0a 0001 78", "A:x;|");
    row("file transfer bytes", "58 0a 0003 010203", "|\x01\x02\x03");
    row("file transfer bytes are one stream", "58 0a 0002 4142 58 0a 0001 43", "|ABC");
    row("a packet between file transfer bytes", "58 0a 0001 05 53 0a 0002 6b31 58 0a 0001 06",
        "S:k1;|\x05\x06");
    row("a packet inside a payload is payload", "41 0a 0005 43 0a 0001 78",
        "A:C\n" + QByteArray("\0\1x;|", 5));
    row("an unfinished payload", "41 0a 0003 6162", "|");
    row("unfinished file transfer bytes are there at once", "58 0a 0005 6162", "|ab");
    row("letters of the other direction", "4b 0a 0001 78 59 0a 0001 78", "|");
    row("a lower-case letter", "61 0a 0001 78", "|");
}

void LTermBufferTest::packets() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, result);

    LTermBuffer buffer;
    add(buffer, bytes);
    QCOMPARE(drain(buffer), result);
}

void LTermBufferTest::every_split_and_every_truncation() {
    const QByteArray stream = QByteArray::fromHex("00 41 0a 0002 6869 58 0a 0003 010203 41 43 0a"
                                                  "56 0a 0000 47 0a 0101") +
                              QByteArray(257, 'g') + QByteArray::fromHex("53 0a 0001 73");
    LTermBuffer whole;
    add(whole, stream);
    const QByteArray expected = drain(whole);
    QCOMPARE(expected, QByteArray("A:hi;G:" + QByteArray(257, 'g') + ";S:s;|\x01\x02\x03"));

    for (qsizetype split = 0; split <= stream.size(); ++split) {
        LTermBuffer buffer;
        add(buffer, stream.first(split));
        const QByteArray first = drain(buffer);
        add(buffer, stream.sliced(split));
        const QByteArray second = drain(buffer);
        const auto packetsOf = [](const QByteArray& text) { return text.first(text.indexOf('|')); };
        const auto bytesOf = [](const QByteArray& text) {
            return text.sliced(text.indexOf('|') + 1);
        };
        QCOMPARE(packetsOf(first) + packetsOf(second) + '|' + bytesOf(first) + bytesOf(second),
                 expected);
        // What is cut off never shows, and what is there before the cut is a beginning.
        QVERIFY(expected.startsWith(packetsOf(first)));
    }
}

void LTermBufferTest::single_bytes() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, result);

    LTermBuffer buffer;
    for (const char byte : bytes) {
        buffer.Add(&byte, 1);
        buffer.Add(&byte, 0);
    }
    QCOMPARE(drain(buffer), result);
}

void LTermBufferTest::every_type_letter_and_no_other() {
    QByteArray types;
    QByteArray transferTypes;
    for (int value = 0; value < 256; ++value) {
        LTermBuffer buffer;
        const QByteArray letter(1, static_cast<char>(value));
        add(buffer, letter + QByteArray::fromHex("0a000178"));
        const QByteArray result = drain(buffer);
        if (result == "|x") {
            transferTypes += letter;
        } else if (result != "|") {
            QCOMPARE(result, letter + ":x;|");
            types += letter;
        }
    }
    QCOMPARE(types, "ACGMRSTV");
    QCOMPARE(transferTypes, "X");
}

void LTermBufferTest::lengths_data() {
    QTest::addColumn<int>("length");
    for (const int length : {1, 2, 254, 255, 256, 257, 1920, 65534, 65535})
        QTest::addRow("%d", length) << length;
}

void LTermBufferTest::lengths() {
    QFETCH(const int, length);

    for (const char type : {'G', 'X'}) {
        LTermBuffer buffer;
        const std::string head{type, '\n', static_cast<char>(length >> 8),
                               static_cast<char>(length & 0xFF)};
        const QByteArray payload(length, 'p');
        add(buffer, QByteArray::fromStdString(head) + payload.chopped(1));
        QCOMPARE(drain(buffer), type == 'X' ? "|" + payload.chopped(1) : QByteArray("|"));
        add(buffer, QByteArray("p") + QByteArray::fromHex("410a000179"));
        QCOMPARE(drain(buffer), type == 'X' ? QByteArray("A:y;|p") : "G:" + payload + ";A:y;|");
    }
}

void LTermBufferTest::packets_are_queued_in_order() {
    LTermBuffer buffer;
    add(buffer, QByteArray::fromHex("540a000161 410a000162 520a000163"));
    unsigned char type = 0;
    std::string payload;
    QVERIFY(buffer.nextItem(type, payload));
    QCOMPARE(type, 'T');
    QCOMPARE(payload, "a");
    add(buffer, QByteArray::fromHex("540a000164"));
    QCOMPARE(drain(buffer), "A:b;R:c;T:d;|");
}

void LTermBufferTest::a_flood_keeps_the_newest_packets_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<int>("room");
    QTest::addColumn<int>("kept");
    // 4 MiB have room for so many payloads with 64 bytes beside each; a packet of another kind
    // behind them costs one more or fits beside them.
    QTest::newRow("small ones") << 1 << 64527 << 64526;
    QTest::newRow("screens") << 1920 << 2114 << 2114;
    QTest::newRow("the largest") << 65535 << 63 << 63;
}

void LTermBufferTest::a_flood_keeps_the_newest_packets() {
    QFETCH(const int, size);
    QFETCH(const int, room);
    QFETCH(const int, kept);

    const std::string head{'G', '\n', static_cast<char>(size >> 8), static_cast<char>(size & 0xFF)};
    const QByteArray packet = QByteArray::fromStdString(head) + QByteArray(size, 'g');
    unsigned char type = 0;
    std::string payload;
    LTermBuffer buffer;
    for (int round = 0; round < 2; ++round) {
        add(buffer, QByteArray::fromHex("540a00016f"));
        for (int i = 1; i < room; ++i)
            add(buffer, packet);
        // What still fits pushes nothing out; the next one does, and the transfer bytes stay.
        QVERIFY(buffer.nextItem(type, payload));
        QCOMPARE(type, 'T');
        add(buffer, packet + packet + QByteArray::fromHex("4d0a00016e 580a000178"));
        int count = 0;
        while (buffer.nextItem(type, payload) && type == 'G')
            ++count;
        QCOMPARE(payload, "n");
        QCOMPARE(count, kept);
        QVERIFY(!buffer.nextItem(type, payload));
        QCOMPARE(buffer.GetFX(), 'x');
    }
}

void LTermBufferTest::an_empty_queue_gives_nothing() {
    LTermBuffer buffer;
    unsigned char type = 'q';
    std::string payload = "untouched";
    QVERIFY(!buffer.nextItem(type, payload));
    QCOMPARE(type, 'q');
    QCOMPARE(payload, "untouched");
    QVERIFY(!buffer.hasFX());
    QCOMPARE(buffer.GetFX(), 0);

    add(buffer, QByteArray::fromHex("580a0001ff"));
    QVERIFY(buffer.hasFX());
    QCOMPARE(buffer.GetFX(), 255);
    QVERIFY(!buffer.hasFX());
}

void LTermBufferTest::start_of_a_transfer_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<bool>("incoming");
    QTest::addColumn<unsigned int>("mode");
    QTest::addColumn<QByteArray>("left");

    constexpr unsigned int unchanged = 7;
    QTest::newRow("ENQ") << QByteArray("\x05") << true << 0U << QByteArray();
    QTest::newRow("L") << QByteArray("L") << true << 0U << QByteArray();
    QTest::newRow("R") << QByteArray("R") << true << 1U << QByteArray();
    QTest::newRow("K") << QByteArray("K") << false << 0U << QByteArray();
    QTest::newRow("Q") << QByteArray("Q") << false << 1U << QByteArray();
    QTest::newRow("empty") << QByteArray() << false << unchanged << QByteArray();
    QTest::newRow("nothing decides")
        << QByteArray("MNOPxyz\x06", 8) << false << unchanged << QByteArray();
    QTest::newRow("others first") << QByteArray("MNOP\x06\x1dZL\x05", 9) << true << 0U
                                  << QByteArray("\x05");
    QTest::newRow("the first decides")
        << QByteArray("KL\x05") << false << 0U << QByteArray("L\x05");
    QTest::newRow("only one is taken")
        << QByteArray("\x05\x05\x1d") << true << 0U << QByteArray("\x05\x1d");
    QTest::newRow("zeros are discarded")
        << QByteArray("\0\0R\0", 4) << true << 1U << QByteArray("\0", 1);
}

void LTermBufferTest::start_of_a_transfer() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const bool, incoming);
    QFETCH(const unsigned int, mode);
    QFETCH(const QByteArray, left);

    LTermBuffer buffer;
    for (const char byte : bytes)
        add(buffer, QByteArray::fromHex("580a0001") + byte);
    unsigned int found = 7;
    QCOMPARE(buffer.IncomingFXPacket(found), incoming);
    QCOMPARE(found, mode);
    QCOMPARE(drain(buffer), "|" + left);
}

void LTermBufferTest::dropped_transfer_bytes() {
    LTermBuffer buffer;
    add(buffer, QByteArray::fromHex("410a000161 580a000101 580a0004 4c52"));
    buffer.dropFX();
    QVERIFY(!buffer.hasFX());
    // The rest of the packet goes the same way, and so do whole packets of a file.
    add(buffer, QByteArray::fromHex("05"));
    add(buffer, QByteArray::fromHex("4c 580a00011d 580a0005 00014c5205"));
    QVERIFY(!buffer.hasFX());
    // Other packets pass, and one that begins like a request ends it for all that follow.
    add(buffer, QByteArray::fromHex("430a000163 580a000252 00 580a000100"));
    QCOMPARE(drain(buffer), QByteArray("A:a;C:c;|R\0\0", 12));

    // Inside another packet there is nothing to drop but what comes later.
    add(buffer, QByteArray::fromHex("580a00014b 540a000261"));
    buffer.dropFX();
    add(buffer, QByteArray::fromHex("62 580a00011d 580a00014b"));
    QCOMPARE(drain(buffer), "T:ab;|K");
}

void LTermBufferTest::what_ends_the_dropping() {
    QByteArray requests;
    for (int value = 0; value < 256; ++value) {
        LTermBuffer buffer;
        buffer.dropFX();
        add(buffer, QByteArray::fromHex("580a0001") + static_cast<char>(value));
        if (buffer.hasFX())
            requests += static_cast<char>(value);
    }
    QCOMPARE(requests, "\x05KLMNOPQR");
}

void LTermBufferTest::runs_of_garbage_and_packets_do_not_depend_on_the_chunks() {
    std::mt19937 random(20240607);
    const QByteArray alphabet = QByteArray("ACGMRSTVXZ\n\n\n\n") + QByteArray(6, '\0') + "\x01\x02";
    for (int run = 0; run < 500; ++run) {
        QByteArray stream;
        for (int i = 0; i < 400; ++i)
            stream += alphabet[static_cast<int>(random() % static_cast<unsigned>(alphabet.size()))];
        LTermBuffer whole;
        add(whole, stream);
        LTermBuffer chunked;
        for (qsizetype at = 0; at < stream.size();) {
            const qsizetype size =
                std::min(static_cast<qsizetype>(random() % 9), stream.size() - at);
            add(chunked, stream.sliced(at, size));
            at += size;
        }
        QCOMPARE(drain(chunked), drain(whole));
    }
}

int main(int argc, char** argv) {
    return runTest<LTermBufferTest>(argc, argv);
}

#include "LTermBufferTest.moc"
