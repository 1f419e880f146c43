#include "SerialPacket.h"
#include "TestEnvironment.h"

/// Packets to the instrument, byte for byte: no line feed after the letter in this direction.
class SerialPacketTest : public QObject {
    Q_OBJECT

private slots:
    void one_packet_data();
    void one_packet();
    void a_long_payload_goes_out_in_several_packets_data();
    void a_long_payload_goes_out_in_several_packets();
};

void SerialPacketTest::one_packet_data() {
    QTest::addColumn<char>("type");
    QTest::addColumn<QByteArray>("payload");
    QTest::addColumn<QByteArray>("head");

    QTest::newRow("empty") << 'M' << QByteArray() << QByteArray::fromHex("4d0000");
    QTest::newRow("a key") << 'K' << QByteArray::fromHex("0141") << QByteArray::fromHex("4b0002");
    QTest::newRow("any values") << 'X' << QByteArray::fromHex("00ff0a58")
                                << QByteArray::fromHex("580004");
    QTest::newRow("255") << 'C' << QByteArray(255, 'c') << QByteArray::fromHex("4300ff");
    QTest::newRow("256") << 'C' << QByteArray(256, 'c') << QByteArray::fromHex("430100");
    QTest::newRow("65534") << 'Y' << QByteArray(65534, 'y') << QByteArray::fromHex("59fffe");
    QTest::newRow("65535") << 'Y' << QByteArray(65535, 'y') << QByteArray::fromHex("59ffff");
}

void SerialPacketTest::one_packet() {
    QFETCH(const char, type);
    QFETCH(const QByteArray, payload);
    QFETCH(const QByteArray, head);

    QCOMPARE(QByteArray::fromStdString(serialpacket::build(type, payload.toStdString())),
             head + payload);
    QCOMPARE(QByteArray::fromStdString(serialpacket::buildAll(type, payload.toStdString())),
             head + payload);
}

void SerialPacketTest::a_long_payload_goes_out_in_several_packets_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<QByteArray>("lastHead");

    QTest::newRow("65536") << 65536 << QByteArray::fromHex("4d0001");
    QTest::newRow("two full packets") << 131070 << QByteArray::fromHex("4dffff");
}

void SerialPacketTest::a_long_payload_goes_out_in_several_packets() {
    QFETCH(const int, size);
    QFETCH(const QByteArray, lastHead);
    constexpr int full = 65535;
    const QByteArray payload(size, 'm');

    const QByteArray bytes =
        QByteArray::fromStdString(serialpacket::buildAll('M', payload.toStdString()));
    QCOMPARE(bytes,
             QByteArray::fromHex("4dffff") + payload.first(full) + lastHead + payload.sliced(full));
    QCOMPARE(serialpacket::build('M', payload.toStdString()).size(), std::size_t{3 + full});
}

int main(int argc, char** argv) {
    return runTest<SerialPacketTest>(argc, argv);
}

#include "SerialPacketTest.moc"
