// The instrument's side of the frames, with peers that mean well and others.

#include "FrameReader.h"
#include "TestEnvironment.h"

#include <QList>

using namespace std::string_literals;

class TestFrameReader : public QObject {
    Q_OBJECT

private slots:
    void packets_data();
    void packets();
    void lengths_data();
    void lengths();
    void tags_data();
    void tags();
    void nothingFollowsARefusal();
};

namespace {

QList<QByteArray> drain(FrameReader& reader) {
    QList<QByteArray> packets;
    while (const auto packet = reader.nextPacket())
        packets.append(QByteArray::fromStdString(*packet));
    return packets;
}

std::string lengthBytes(std::size_t length) {
    std::string bytes;
    for (const unsigned int shift : {24U, 16U, 8U, 0U})
        bytes.push_back(static_cast<char>((length >> shift) & 0xFFU));
    return bytes;
}

} // namespace

void TestFrameReader::packets_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QList<QByteArray>>("packets");
    using List = QList<QByteArray>;
    QTest::newRow("nothing") << QByteArray() << List{};
    QTest::newRow("one") << QByteArrayLiteral("<D>\0\0\0\x03pay") << List{"pay"};
    QTest::newRow("two") << QByteArrayLiteral("<D>\0\0\0\x01"
                                              "a<D>\0\0\0\x02"
                                              "bc")
                         << List{"a", "bc"};
    QTest::newRow("empty") << QByteArrayLiteral("<D>\0\0\0\0") << List{""};
    QTest::newRow("brackets in the payload")
        << QByteArrayLiteral("<D>\0\0\0\x04<D>\0<D>\0\0\0\x01x")
        << List{QByteArrayLiteral("<D>\0"), "x"};
    QTest::newRow("stray bytes") << QByteArrayLiteral("D>\0\xFF\r\n<D>\0\0\0\x01x>>") << List{"x"};
    QTest::newRow("another tag") << QByteArrayLiteral("<X>\0\0\0\x01x<D>\0\0\0\x01y") << List{"y"};
    QTest::newRow("no tag") << QByteArrayLiteral("<>\0\0\0\x01x<D>\0\0\0\x01y") << List{"y"};
    QTest::newRow("bracket in the tag")
        << QByteArrayLiteral("<<D>\0\0\0\x01x<D>\0\0\0\x01y") << List{"y"};
    QTest::newRow("tag that begins alike")
        << QByteArrayLiteral("<DD>\0\0\0\x01x<d>\0\0\0\x01z<D>\0\0\0\x01y") << List{"y"};
}

void TestFrameReader::packets() {
    QFETCH(QByteArray, bytes);
    QFETCH(QList<QByteArray>, packets);
    const std::string all = bytes.toStdString();
    for (std::size_t split = 0; split <= all.size(); ++split) {
        FrameReader reader;
        reader.add(std::string_view(all).substr(0, split));
        QList<QByteArray> got = drain(reader);
        // Nothing comes out before its last byte is in.
        QVERIFY(packets.mid(0, got.size()) == got);
        reader.add(std::string_view(all).substr(split));
        got += drain(reader);
        QCOMPARE(got, packets);
        QVERIFY(!reader.hasRefused());
    }
    FrameReader reader;
    QList<QByteArray> got;
    for (const char byte : all) {
        reader.add({&byte, 1});
        got += drain(reader);
    }
    QCOMPARE(got, packets);
}

void TestFrameReader::lengths_data() {
    QTest::addColumn<qulonglong>("length");
    QTest::addColumn<bool>("refused");
    const qulonglong most = 1048576;
    QTest::newRow("0") << 0ULL << false;
    QTest::newRow("1") << 1ULL << false;
    QTest::newRow("one less than the most") << most - 1 << false;
    QTest::newRow("the most") << most << false;
    QTest::newRow("one more") << most + 1 << true;
    QTest::newRow("sign bit") << 0x80000000ULL << true;
    QTest::newRow("4 GiB - 1") << 0xFFFFFFFFULL << true;
}

void TestFrameReader::lengths() {
    QFETCH(qulonglong, length);
    QFETCH(bool, refused);
    FrameReader reader;
    reader.add("<D>"s + lengthBytes(length));
    // A length that is too long is refused before a byte of the payload has come.
    QCOMPARE(reader.nextPacket().has_value(), length == 0);
    QCOMPARE(reader.hasRefused(), refused);
    if (refused || length == 0)
        return;
    reader.add(std::string(length - 1, 'p'));
    QVERIFY(!reader.nextPacket());
    reader.add("p");
    const auto packet = reader.nextPacket();
    QVERIFY(packet);
    QCOMPARE(packet->size(), static_cast<std::size_t>(length));
}

void TestFrameReader::tags_data() {
    QTest::addColumn<int>("size");
    QTest::addColumn<bool>("closed");
    QTest::addColumn<bool>("refused");
    QTest::newRow("63") << 63 << true << false;
    QTest::newRow("64") << 64 << true << false;
    QTest::newRow("64 and open") << 64 << false << false;
    QTest::newRow("65 and open") << 65 << false << true;
    QTest::newRow("65") << 65 << true << true;
    QTest::newRow("100000") << 100000 << false << true;
}

void TestFrameReader::tags() {
    QFETCH(int, size);
    QFETCH(bool, closed);
    QFETCH(bool, refused);
    FrameReader reader;
    reader.add("<");
    reader.add(std::string(static_cast<std::size_t>(size), 't'));
    reader.add(closed ? ">" : "");
    QVERIFY(!reader.nextPacket());
    QCOMPARE(reader.hasRefused(), refused);
}

void TestFrameReader::nothingFollowsARefusal() {
    FrameReader reader;
    reader.add("<D>\0\0\0\1a<D>\xFF\xFF\xFF\xFF<D>\0\0\0\1b"s);
    QCOMPARE(drain(reader), QList<QByteArray>{"a"});
    QVERIFY(reader.hasRefused());
    reader.add("<D>\0\0\0\1c"s);
    QVERIFY(!reader.nextPacket());
}

int main(int argc, char** argv) {
    return runTest<TestFrameReader>(argc, argv);
}

#include "test_framereader.moc"
