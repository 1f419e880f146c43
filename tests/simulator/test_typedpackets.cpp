// The instrument's end of the line's framing: bytes as the program sends them, bytes as it expects
// them.

#include "TestEnvironment.h"
#include "TypedPacketReader.h"
#include "TypedPackets.h"

class TestTypedPackets : public QObject {
    Q_OBJECT

private slots:
    void toTheProgram_data();
    void toTheProgram();
    void toTheInstrument_data();
    void toTheInstrument();
    void reads_data();
    void reads();
    void everySplit();
    void lengths_data();
    void lengths();
    void beginsAnew();
};

namespace {

const QByteArray zeros(4, '\0');

QByteArray drain(TypedPacketReader& reader) {
    QByteArray result;
    while (const auto packet = reader.next())
        result += packet->type + (':' + QByteArray::fromStdString(packet->payload)) + ';';
    return result;
}

std::string_view view(const QByteArray& bytes) {
    return {bytes.data(), static_cast<std::size_t>(bytes.size())};
}

} // namespace

void TestTypedPackets::toTheProgram_data() {
    QTest::addColumn<QByteArray>("packet");
    QTest::addColumn<QByteArray>("bytes");
    const auto row = [](const char* name, const QByteArray& packet, const char* hex) {
        QTest::newRow(name) << packet << QByteArray::fromHex(hex);
    };
    row("chat", zeros + "CHAThi", "4d0a0002 6869");
    row("chat without text", zeros + "CHAT", "4d0a0000");
    row("soft keys", zeros + "SOFTx", "530a0001 78");
    row("variables", zeros + "VARSx", "560a0001 78");
    row("text, attributes, cursor",
        zeros + "BNDL" + QByteArray::fromHex("540000000161 410000000100 5200000003010203"),
        "540a0001 61 410a0001 00 520a0003 010203");
    row("graphics", zeros + "BNDL" + QByteArray::fromHex("4700000002ff00"), "470a0002 ff00");
    row("an update without items", zeros + "BNDL", "");
    row("keys do not go this way", zeros + "KEYSab", "");
    row("no packet", "BNDL", "");
}

void TestTypedPackets::toTheProgram() {
    QFETCH(const QByteArray, packet);
    QFETCH(const QByteArray, bytes);
    QCOMPARE(QByteArray::fromStdString(typedpackets::fromPacket(view(packet))), bytes);
}

void TestTypedPackets::toTheInstrument_data() {
    QTest::addColumn<char>("type");
    QTest::addColumn<QByteArray>("packetType");
    QTest::newRow("K") << 'K' << QByteArray("KEYS");
    QTest::newRow("C") << 'C' << QByteArray("COMI");
    QTest::newRow("M") << 'M' << QByteArray("CHAT");
    QTest::newRow("Y") << 'Y' << QByteArray("FXTO");
    QTest::newRow("X") << 'X' << QByteArray();
    QTest::newRow("T") << 'T' << QByteArray();
}

void TestTypedPackets::toTheInstrument() {
    QFETCH(const char, type);
    QFETCH(const QByteArray, packetType);
    const auto packet = typedpackets::toPacket(type, std::string_view("a\0b", 3));
    QCOMPARE(packet.has_value(), !packetType.isEmpty());
    if (packet)
        QCOMPARE(QByteArray::fromStdString(*packet), zeros + packetType + QByteArray("a\0b", 3));
}

void TestTypedPackets::reads_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QByteArray>("packets");
    const auto row = [](const char* name, const char* hex, const QByteArray& packets) {
        QTest::newRow(name) << QByteArray::fromHex(hex) << packets;
    };
    row("a key", "4b0002 0141", "K:\x01\x41;");
    row("no payload", "4d0000 430001 78", "M:;C:x;");
    row("a line feed is no part of it", "4d0a00", "");
    row("noise in front", "000a5a6b 4b0001 78", "K:x;");
    row("two at once", "580001 05 590009 49443a43415443480a", "X:\x05;Y:ID:CATCH\n;");
    row("a packet inside a payload", "590004 4b000178", QByteArray("Y:K\0\1x;", 7));
    row("cut off", "4b0003 7878", "");
}

void TestTypedPackets::reads() {
    QFETCH(const QByteArray, bytes);
    QFETCH(const QByteArray, packets);
    TypedPacketReader reader;
    reader.add(view(bytes));
    QCOMPARE(drain(reader), packets);
}

void TestTypedPackets::everySplit() {
    const QByteArray stream = QByteArray::fromHex("ff 4b0002 0141 4d0000 580003 585858 59");
    for (qsizetype split = 0; split <= stream.size(); ++split) {
        TypedPacketReader reader;
        reader.add(view(stream.first(split)));
        const QByteArray first = drain(reader);
        reader.add(view(stream.sliced(split)));
        QCOMPARE(first + drain(reader), "K:\x01\x41;M:;X:XXX;");
        QVERIFY(reader.isInside());
    }
}

void TestTypedPackets::lengths_data() {
    QTest::addColumn<int>("length");
    for (const int length : {0, 1, 255, 256, 65534, 65535})
        QTest::addRow("%d", length) << length;
}

void TestTypedPackets::lengths() {
    QFETCH(const int, length);
    const QByteArray payload(length, 'p');
    const QByteArray size = QByteArray::fromHex(QByteArray::number(0x10000 + length, 16).last(4));
    QCOMPARE(QByteArray::fromStdString(typedpackets::build('G', view(payload))),
             "G\n" + size + payload);
    TypedPacketReader reader;
    reader.add(view("Y" + size + payload));
    QCOMPARE(drain(reader), "Y:" + payload + ';');
    QVERIFY(!reader.isInside());
}

void TestTypedPackets::beginsAnew() {
    TypedPacketReader reader;
    reader.add(view(QByteArray::fromHex("4bffff 7878")));
    QVERIFY(reader.isInside());
    reader.reset();
    QVERIFY(!reader.isInside());
    reader.add(view(QByteArray::fromHex("430001 79")));
    QCOMPARE(drain(reader), "C:y;");
}

int main(int argc, char** argv) {
    return runTest<TestTypedPackets>(argc, argv);
}

#include "test_typedpackets.moc"
