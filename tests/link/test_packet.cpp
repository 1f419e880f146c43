#include "ConnectGX7100.h"
#include "Packet.h"
#include "TestEnvironment.h"

#include <QSignalSpy>

#include <string>

using namespace std::string_literals;

namespace {

/// A link without a medium: what would be written is kept.
class RecordingLink : public ConnectGX7100 {
    Q_OBJECT

public:
    using ConnectGX7100::ConnectGX7100;
    void Disconnect() override {}
    bool IsOpen() override { return true; }
    void Send(const std::string& bytes) override { written += bytes; }

    std::string written;
};

} // namespace

class TestPacket : public QObject {
    Q_OBJECT

private slots:
    void keys_data() {
        QTest::addColumn<unsigned short>("code");
        QTest::addColumn<std::string>("onTheWire");
        using Code = unsigned short;
        QTest::newRow("nothing") << Code(0x0000) << "<D>\0\0\0\x0A\0\0\0\0KEYS\0\0"s;
        QTest::newRow("a character") << Code(0x0041) << "<D>\0\0\0\x0A\0\0\0\0KEYS\0A"s;
        QTest::newRow("group 1") << Code(0x0141) << "<D>\0\0\0\x0A\0\0\0\0KEYS\1A"s;
        QTest::newRow("key 0") << Code(0x0500) << "<D>\0\0\0\x0A\0\0\0\0KEYS\5\0"s;
        QTest::newRow("largest") << Code(0xFFFF) << "<D>\0\0\0\x0A\0\0\0\0KEYS\xFF\xFF"s;
    }
    void keys() {
        QFETCH(const unsigned short, code);
        QFETCH(const std::string, onTheWire);
        RecordingLink link(nullptr);
        link.slotTo(ConnectGX7100::sendKey(code));
        QCOMPARE(link.written.size(), std::size_t(17));
        QCOMPARE(link.written, onTheWire);
    }

    void texts_data() {
        QTest::addColumn<QString>("text");
        QTest::addColumn<std::string>("body");
        QTest::newRow("empty") << QString() << ""s;
        QTest::newRow("words") << QStringLiteral("Hello, bridge 7!") << "Hello, bridge 7!"s;
        QTest::newRow("line break") << QStringLiteral("a\r\nb") << "a\r\nb"s;
        QTest::newRow("beyond ASCII") << QStringLiteral("5 µV") << "5 \xC2\xB5V"s;
        QTest::newRow("NUL ends it") << QStringLiteral("seen\0unseen") << "seen"s;
        QTest::newRow("nothing before NUL") << QStringLiteral("\0unseen") << ""s;
    }
    void texts() {
        QFETCH(const QString, text);
        QFETCH(const std::string, body);
        QCOMPARE(ConnectGX7100::sendChat(text), "\0\0\0\0CHAT"s + body);
        QCOMPARE(ConnectGX7100::sendCommIn(text), "\0\0\0\0COMI"s + body);
    }

    void backChannel_data() {
        QTest::addColumn<std::string>("id");
        QTest::addColumn<std::string>("data");
        QTest::addColumn<std::string>("packet");
        QTest::newRow("both") << "file1"s
                              << "some data"s
                              << "\0\0\0\0FXTOID:file1\nsome data"s;
        QTest::newRow("neither") << ""s
                                 << ""s
                                 << "\0\0\0\0FXTOID:\n"s;
        QTest::newRow("bytes") << "7"s
                               << "\x80\xFF\n"s
                               << "\0\0\0\0FXTOID:7\n\x80\xFF\n"s;
        QTest::newRow("NUL in the data") << "7"s
                                         << "seen\0unseen"s
                                         << "\0\0\0\0FXTOID:7\nseen"s;
        QTest::newRow("NUL in the id") << "7\0"s
                                       << "unseen"s
                                       << "\0\0\0\0FXTOID:7"s;
    }
    void backChannel() {
        QFETCH(const std::string, id);
        QFETCH(const std::string, data);
        QFETCH(const std::string, packet);
        QCOMPARE(ConnectGX7100::sendBackChannel(id, data), packet);
    }

    void fourBytes_data() {
        QTest::addColumn<unsigned int>("value");
        QTest::addColumn<std::string>("bytes");
        QTest::newRow("0") << 0U << "\0\0\0\0"s;
        QTest::newRow("1") << 1U << "\0\0\0\1"s;
        QTest::newRow("order") << 0x01020304U << "\1\2\3\4"s;
        QTest::newRow("high bits") << 0x80FF7F80U << "\x80\xFF\x7F\x80"s;
        QTest::newRow("max - 1") << 0xFFFFFFFEU << "\xFF\xFF\xFF\xFE"s;
        QTest::newRow("max") << 0xFFFFFFFFU << "\xFF\xFF\xFF\xFF"s;
    }
    void fourBytes() {
        QFETCH(const unsigned int, value);
        QFETCH(const std::string, bytes);
        QCOMPARE(ConnectGX7100::FourByteValue(value), bytes);
        QCOMPARE(ConnectGX7100::unsignedFromString(bytes), value);
        QCOMPARE(ConnectGX7100::unsignedFromString(bytes + "more"), value);
    }

    void unsignedFromTooFewBytes_data() {
        QTest::addColumn<std::string>("bytes");
        QTest::addColumn<unsigned int>("value");
        QTest::newRow("0 bytes") << ""s << 0U;
        QTest::newRow("1 byte") << "\1"s << 0x01000000U;
        QTest::newRow("3 bytes") << "\1\2\3"s << 0x01020300U;
    }
    void unsignedFromTooFewBytes() {
        QFETCH(const std::string, bytes);
        QFETCH(const unsigned int, value);
        QCOMPARE(ConnectGX7100::unsignedFromString(bytes), value);
    }

    void bundles() {
        QCOMPARE(ConnectGX7100::Bundle("<D>", "hello"), "<D>\0\0\0\5hello"s);
        QCOMPARE(ConnectGX7100::Bundle("T", ""), "T\0\0\0\0"s);
        QCOMPARE(ConnectGX7100::Bundle("", "a\0b"s), "\0\0\0\3a\0b"s);
        QCOMPARE(ConnectGX7100::Bundle("G", std::string(300, 'g')),
                 "G\0\0\1\x2C"s + std::string(300, 'g'));
    }

    void slotToSendsOneFrame() {
        RecordingLink link(nullptr);
        link.slotTo("");
        QCOMPARE(link.written, "<D>\0\0\0\0"s);
        link.slotTo("any\0bytes<>"s);
        QCOMPARE(link.written, "<D>\0\0\0\0<D>\0\0\0\x0B"s + "any\0bytes<>"s);
    }

    void takenApart_data() {
        QTest::addColumn<std::string>("bytes");
        QTest::addColumn<bool>("isPacket");
        QTest::addColumn<std::string>("type");
        QTest::addColumn<std::string>("body");
        QTest::newRow("nothing") << ""s << false << ""s
                                 << ""s;
        QTest::newRow("7 bytes") << "\0\0\0\0BND"s << false << ""s
                                 << ""s;
        QTest::newRow("8 bytes") << "\0\0\0\0BNDL"s << true << "BNDL"s
                                 << ""s;
        QTest::newRow("9 bytes") << "\0\0\0\0CHAT\0"s << true << "CHAT"s
                                 << "\0"s;
        QTest::newRow("first field unread") << "\1<D>CHAThi"s << true << "CHAT"s
                                            << "hi"s;
        QTest::newRow("unknown type") << "\0\0\0\0\0\xFF??x"s << true << "\0\xFF??"s
                                      << "x"s;
    }
    void takenApart() {
        QFETCH(const std::string, bytes);
        QFETCH(const bool, isPacket);
        QFETCH(const std::string, type);
        QFETCH(const std::string, body);
        const auto parsed = packet::parse(bytes);
        QCOMPARE(parsed.has_value(), isPacket);
        if (parsed) {
            QCOMPARE(std::string(parsed->type), type);
            QCOMPARE(std::string(parsed->body), body);
        }
    }

    /// What a link does not have is not an error: the tile asks every link for everything.
    void theBaseIgnoresWhatItHasNot() {
        RecordingLink link(nullptr);
        const QSignalSpy connected(&link, &ConnectGX7100::connected);
        const QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
        link.Connect("127.0.0.1", 1, 7100);
        link.Connect(QStringLiteral("ttyS0"));
        link.Connect(QStringLiteral("a"), QStringLiteral("b"));
        link.stopXfer();
        QCOMPARE(connected.count() + disconnected.count(), 0);
        QVERIFY(link.written.empty());
    }

    /// Packets travel between threads under this name.
    void packetsAreAMetaType() {
        const RecordingLink link(nullptr);
        QVERIFY(QMetaType::fromName("std::string").isValid());
        QCOMPARE(QMetaType::fromName("std::string"), QMetaType::fromType<std::string>());
    }
};

int main(int argc, char** argv) {
    return runTest<TestPacket>(argc, argv);
}

#include "test_packet.moc"
