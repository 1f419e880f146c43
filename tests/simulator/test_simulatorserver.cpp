// Simulated instruments on a real socket, byte by byte.

#include "Peer.h"
#include "SimulatorServer.h"
#include "TestEnvironment.h"

#include <QSignalSpy>

#include <memory>

using namespace std::chrono_literals;

class TestSimulatorServer : public QObject {
    Q_OBJECT

private slots:
    void firstScreen();
    void keyOnTheKeysPage();
    void pagesTurn();
    void entryCursor();
    void graphicsUpdate();
    void sameSeedSameBytes();
    void chat();
    void chatFromTheInstrument();
    void framesThatAreNotForIt();
    void severalInOneRead();
    void splitEverywhere();
    void updatesByTheClock();
    void stillAtRateZero();
    void connectionsAreIndependent();
    void manyAtOnce();
    void tooManyAtOnce();
    void acceptsAgainAfterAnError();
    void hugeLength();
    void longTag();
    void slowReaderGetsTheLatest();
    void peerThatNeverReads();
    void dropAndStop();
    void dropFromWithinAKey();
    void listensOnIpv6();
    void portInUse();
    void faults_data();
    void faults();
    void halfFrameThenSilence();
    void abruptClose();
    void namesAndNumbers();
};

namespace {

/// Pages that change only when told, so that every byte can be foretold.
SimulatorSettings still(PageId page) {
    SimulatorSettings settings;
    settings.instrument.page = page;
    settings.instrument.name = "North";
    settings.updatesPerSecond = 0;
    return settings;
}

/// A server that listens on a free port of this machine.
class Listening : public SimulatorServer {
public:
    explicit Listening(SimulatorSettings settings) : SimulatorServer(std::move(settings)) {
        if (!listen(QHostAddress::LocalHost, 0))
            qFatal("%s", qPrintable(errorString()));
    }
};

QByteArray keyFrame(int code) {
    return QByteArrayLiteral("<D>\0\0\0\x0A\0\0\0\0KEYS") + static_cast<char>(code >> 8) +
           static_cast<char>(code & 0xFF);
}

/// A row of the text that a text update carries.
QByteArray rowOf(const QByteArray& update, int row) {
    return update.mid(20 + 40 * (row - 1), 40);
}

void waitUntilConnected(const SimulatorServer& server, int count) {
    QTRY_COMPARE_WITH_TIMEOUT(server.connectionCount(), count, patience);
}

} // namespace

void TestSimulatorServer::firstScreen() {
    Listening server(still(PageId::Keys));
    Peer peer(server.port());
    const QByteArray bytes = peer.take(textUpdateSize);
    QCOMPARE(bytes.first(20), QByteArrayLiteral("<D>\0\0\x02\x9A\0\0\0\0BNDLT\0\0\x01\x40"));
    QCOMPARE(bytes.sliced(340, 5), QByteArrayLiteral("A\0\0\x01\x40"));
    QCOMPARE(bytes.last(8), QByteArrayLiteral("R\0\0\0\x03\0\x01\x01"));
}

void TestSimulatorServer::keyOnTheKeysPage() {
    Listening server(still(PageId::Keys));
    QSignalSpy keys(&server, &SimulatorServer::keyReceived);
    QSignalSpy packets(&server, &SimulatorServer::packetReceived);
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.send(QByteArrayLiteral("<D>\0\0\0\x0A\0\0\0\0KEYS\x61\x01"));
    QCOMPARE(rowOf(peer.take(textUpdateSize), 2),
             QByteArrayLiteral("\xB3     1 \xB3 0x6101 \xB3 Shift+F2            \xB3"));
    QCOMPARE(keys.size(), 1);
    QCOMPARE(keys.first(), (QVariantList{1, QVariant::fromValue(quint16{0x6101})}));
    QCOMPARE(packets.first(), (QVariantList{1, QByteArrayLiteral("\0\0\0\0KEYS\x61\x01")}));
    QCOMPARE(server.keys(1), QList<quint16>{0x6101});
    QCOMPARE(server.keys(2), QList<quint16>());
}

void TestSimulatorServer::pagesTurn() {
    Listening server(still(PageId::Home));
    Peer peer(server.port());
    peer.take(textUpdateSize);
    const QList<std::pair<int, QByteArray>> steps{{0x6000, " TEXT "},
                                                  {0x2700, " EDIT "},
                                                  {27, ":00:00 "},
                                                  {0x2600, " CHAT "},
                                                  {0x6401, ":00:00 "}};
    for (const auto& [key, title] : steps) {
        peer.send(keyFrame(key));
        const QByteArray row = rowOf(peer.take(textUpdateSize), 1);
        QVERIFY2(row.endsWith(title), row.constData());
    }
}

void TestSimulatorServer::entryCursor() {
    Listening server(still(PageId::Entry));
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.send(keyFrame('x'));
    const QByteArray typed = peer.take(textUpdateSize);
    QCOMPARE(rowOf(typed, 3).first(4), QByteArrayLiteral("\xB3 x "));
    QCOMPARE(typed.last(8), QByteArrayLiteral("R\0\0\0\x03\x01\x04\x03"));
    peer.send(keyFrame(0x6000));
    QCOMPARE(peer.take(textUpdateSize).last(8), QByteArrayLiteral("R\0\0\0\x03\x02\x04\x03"));
}

void TestSimulatorServer::graphicsUpdate() {
    Listening server(still(PageId::Graphics));
    Peer peer(server.port());
    const QByteArray first = peer.take(graphicsUpdateSize);
    QCOMPARE(first.first(20), QByteArrayLiteral("<D>\0\0\x07\x8D\0\0\0\0BNDLG\0\0\x07\x80"));
    server.tick(250ms);
    const QByteArray second = peer.take(graphicsUpdateSize);
    QCOMPARE(second.first(20), first.first(20));
    QVERIFY(second != first);
    QCOMPARE(peer.rest(), QByteArray());
}

void TestSimulatorServer::sameSeedSameBytes() {
    constexpr qsizetype updates = 30;
    const auto run = [](std::uint32_t seed) {
        SimulatorSettings settings = still(PageId::Graphics);
        settings.instrument.seed = seed;
        Listening server(settings);
        Peer peer(server.port());
        QByteArray all = peer.take(graphicsUpdateSize);
        for (int i = 1; i < updates; ++i)
            server.tick(100ms);
        all += peer.take(graphicsUpdateSize * (updates - 1));
        return all;
    };
    const QByteArray once = run(11);
    QCOMPARE(once.size(), graphicsUpdateSize * updates);
    QCOMPARE(run(11), once);
    QVERIFY(run(12) != once);
}

void TestSimulatorServer::chat() {
    Listening server(still(PageId::Text));
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.send(QByteArrayLiteral("<D>\0\0\0\x0D\0\0\0\0CHAThello"));
    QCOMPARE(peer.take(27), QByteArrayLiteral("<D>\0\0\0\x14\0\0\0\0CHATNorth: hello"));
}

void TestSimulatorServer::chatFromTheInstrument() {
    Listening server(still(PageId::Text));
    Peer peer(server.port());
    peer.take(textUpdateSize);
    server.sendChat(1, "come quick");
    QCOMPARE(peer.take(25), QByteArrayLiteral("<D>\0\0\0\x12\0\0\0\0CHATcome quick"));
    server.sendChat(2, "to nobody");
}

void TestSimulatorServer::framesThatAreNotForIt() {
    Listening server(still(PageId::Keys));
    QSignalSpy keys(&server, &SimulatorServer::keyReceived);
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.send(QByteArrayLiteral("<X>\0\0\0\x0A\0\0\0\0KEYS\0a"
                                "<>\0\0\0\x0A\0\0\0\0KEYS\0b"
                                "<<D>\0\0\0\x0A\0\0\0\0KEYS\0c"
                                "<D>\0\0\0\0"
                                "<D>\0\0\0\x0A\0\0\0\0ZZZZ\0d"
                                "stray"
                                "<D>\0\0\0\x0A\0\0\0\0KEYS\0e"));
    QCOMPARE(rowOf(peer.take(textUpdateSize), 2).sliced(10, 6), QByteArray("0x0065"));
    QCOMPARE(keys.size(), 1);
}

void TestSimulatorServer::severalInOneRead() {
    Listening server(still(PageId::Keys));
    Peer peer(server.port());
    peer.send(keyFrame('a') + keyFrame('b') + keyFrame('c'));
    const QByteArray all = peer.take(4 * textUpdateSize);
    QCOMPARE(rowOf(all.last(textUpdateSize), 2).sliced(10, 6), QByteArray("0x0063"));
    QCOMPARE(server.keys(1), (QList<quint16>{'a', 'b', 'c'}));
}

void TestSimulatorServer::splitEverywhere() {
    Listening server(still(PageId::Keys));
    QSignalSpy keys(&server, &SimulatorServer::keyReceived);
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.socket().setSocketOption(QAbstractSocket::LowDelayOption, 1);
    for (const char byte : keyFrame(0x2400)) {
        QCOMPARE(keys.size(), 0);
        peer.send(QByteArray(1, byte));
        peer.socket().flush();
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE_WITH_TIMEOUT(keys.size(), 1, patience);
}

void TestSimulatorServer::updatesByTheClock() {
    SimulatorSettings settings = still(PageId::Graphics);
    settings.updatesPerSecond = 200;
    Listening server(settings);
    Peer peer(server.port());
    const QByteArray all = peer.take(graphicsUpdateSize * 20);
    QVERIFY(all.last(graphicsUpdateSize) != all.first(graphicsUpdateSize));
}

void TestSimulatorServer::stillAtRateZero() {
    Listening server(still(PageId::Home));
    Peer peer(server.port());
    peer.take(textUpdateSize);
    // Whatever a clock had sent would arrive before the answer to this.
    QTest::qWait(50);
    peer.send(QByteArrayLiteral("<D>\0\0\0\x09\0\0\0\0CHATx"));
    QCOMPARE(peer.take(23), QByteArrayLiteral("<D>\0\0\0\x10\0\0\0\0CHATNorth: x"));
}

void TestSimulatorServer::connectionsAreIndependent() {
    SimulatorSettings settings = still(PageId::Home);
    settings.instrument.name.clear();
    Listening server(settings);
    Peer first(server.port());
    const QByteArray firstScreen = first.take(textUpdateSize);
    Peer second(server.port());
    const QByteArray secondScreen = second.take(textUpdateSize);
    QVERIFY(rowOf(firstScreen, 1).contains("Unit 1 "));
    QVERIFY(rowOf(secondScreen, 1).contains("Unit 2 "));
    // Seeds of their own: what they measure differs.
    QVERIFY(firstScreen.sliced(60) != secondScreen.sliced(60));

    first.send(keyFrame(0x6300));
    QVERIFY(rowOf(first.take(textUpdateSize), 1).contains("KEYS"));
    second.send(keyFrame(0x6000));
    QVERIFY(rowOf(second.take(textUpdateSize), 1).contains("TEXT"));
    QCOMPARE(server.keys(1), QList<quint16>{0x6300});
    QCOMPARE(server.keys(2), QList<quint16>{0x6000});
    QVERIFY(server.screen(1) != server.screen(2));
    QVERIFY(server.screen(3) == InstrumentScreen());

    QSignalSpy gone(&server, &SimulatorServer::disconnected);
    first.socket().disconnectFromHost();
    QTRY_COMPARE_WITH_TIMEOUT(gone.size(), 1, patience);
    QCOMPARE(gone.first(), QVariantList{1});
    QCOMPARE(server.connections(), QList<int>{2});
    second.send(keyFrame(27));
    QVERIFY(rowOf(second.take(textUpdateSize), 1).contains("Unit 2 "));
    // Numbers are not used again.
    Peer third(server.port());
    QVERIFY(rowOf(third.take(textUpdateSize), 1).contains("Unit 3 "));
}

void TestSimulatorServer::manyAtOnce() {
    constexpr int count = 96;
    Listening server(still(PageId::Home));
    std::vector<std::unique_ptr<Peer>> peers;
    peers.reserve(count);
    for (int i = 0; i < count; ++i)
        peers.push_back(std::make_unique<Peer>(server.port()));
    waitUntilConnected(server, count);
    for (int i = 0; i < 10; ++i)
        server.tick(250ms);
    for (const auto& peer : peers)
        QCOMPARE(peer->take(11 * textUpdateSize).size(), 11 * textUpdateSize);
    peers.clear();
    waitUntilConnected(server, 0);
}

void TestSimulatorServer::tooManyAtOnce() {
    SimulatorSettings settings = still(PageId::Text);
    settings.mostConnections = 2;
    Listening server(settings);
    Peer first(server.port());
    Peer second(server.port());
    first.take(textUpdateSize);
    second.take(textUpdateSize);
    Peer third(server.port());
    QVERIFY(third.waitForEnd());
    QCOMPARE(third.rest(), QByteArray());
    QCOMPARE(server.connectionCount(), 2);
    first.socket().disconnectFromHost();
    waitUntilConnected(server, 1);
    Peer fourth(server.port());
    QCOMPARE(fourth.take(textUpdateSize).size(), textUpdateSize);
}

void TestSimulatorServer::acceptsAgainAfterAnError() {
    Listening server(still(PageId::Text));
    // What Qt's server does when the system cannot give it a connection.
    auto* listener = server.findChild<QTcpServer*>();
    listener->pauseAccepting();
    Peer peer(server.port());
    QTRY_COMPARE_WITH_TIMEOUT(peer.socket().state(), QAbstractSocket::ConnectedState, patience);
    emit listener->acceptError(QAbstractSocket::SocketResourceError);
    QCOMPARE(peer.take(textUpdateSize).size(), textUpdateSize);
}

void TestSimulatorServer::hugeLength() {
    Listening server(still(PageId::Text));
    Peer hostile(server.port());
    Peer peer(server.port());
    hostile.take(textUpdateSize);
    hostile.send(QByteArrayLiteral("<D>\xFF\xFF\xFF\xFF"));
    QVERIFY(hostile.waitForEnd());
    peer.take(textUpdateSize);
    peer.send(keyFrame('a'));
    QCOMPARE(peer.take(textUpdateSize).size(), textUpdateSize);
    QCOMPARE(server.connectionCount(), 1);
}

void TestSimulatorServer::longTag() {
    Listening server(still(PageId::Text));
    Peer hostile(server.port());
    hostile.send("<" + QByteArray(1000, 'D'));
    QVERIFY(hostile.waitForEnd());
    waitUntilConnected(server, 0);
}

void TestSimulatorServer::slowReaderGetsTheLatest() {
    Listening server(still(PageId::Graphics));
    Peer peer(server.port());
    peer.take(graphicsUpdateSize);
    peer.stopReading();
    // More than the system's buffers hold by far; what is not skipped would pile up.
    constexpr int ticks = 5000;
    for (int i = 0; i < ticks; ++i) {
        server.tick(10ms);
        QVERIFY(server.backlog(1) < qint64{64} * 1024 + 2 * graphicsUpdateSize);
    }
    const QByteArray latest = QByteArray::fromStdString(server.screen(1).updatePacket());
    peer.resumeReading();
    QByteArray received;
    const auto upToDate = [&peer, &received, &latest] {
        received += peer.take(peer.rest().size());
        return received.endsWith(latest);
    };
    QTRY_VERIFY_WITH_TIMEOUT(upToDate(), patience);
    QCOMPARE(received.size() % graphicsUpdateSize, 0);
    QVERIFY(received.size() < graphicsUpdateSize * ticks);
}

void TestSimulatorServer::peerThatNeverReads() {
    Listening server(still(PageId::Text));
    qint64 highest = 0;
    connect(&server, &SimulatorServer::packetReceived, &server,
            [&server, &highest] { highest = std::max(highest, server.backlog(1)); });
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.stopReading();
    // More than the system's buffers hold by far, each answered at the same length.
    constexpr qsizetype count = 8000;
    const QByteArray chat =
        QByteArrayLiteral("<D>\0\0\x04\x08\0\0\0\0CHAT") + QByteArray(1024, 'x');
    for (qsizetype i = 0; i < count; ++i)
        peer.send(chat);
    constexpr qint64 limit = qint64{256} * 1024;
    QTRY_VERIFY_WITH_TIMEOUT(server.backlog(1) > limit, patience);
    // Once it reads again, everything is answered, and never was more held than a little.
    peer.resumeReading();
    constexpr qsizetype answer = 7 + 8 + 7 + 1024;
    QCOMPARE(peer.take(count * answer).size(), count * answer);
    QVERIFY2(highest < limit + qint64{16} * 1024, qPrintable(QString::number(highest)));
}

void TestSimulatorServer::dropAndStop() {
    Listening server(still(PageId::Text));
    const quint16 port = server.port();
    Peer first(port);
    first.take(textUpdateSize);
    Peer second(port);
    second.take(textUpdateSize);
    QSignalSpy gone(&server, &SimulatorServer::disconnected);
    server.drop(1);
    QVERIFY(first.waitForEnd());
    server.drop(1);
    QCOMPARE(gone, QList<QVariantList>{{1}});
    server.stop();
    QVERIFY(second.waitForEnd());
    QCOMPARE(gone, (QList<QVariantList>{{1}, {2}}));
    Peer refused(port);
    QVERIFY(refused.waitForEnd());
    QCOMPARE(refused.socket().error(), QAbstractSocket::ConnectionRefusedError);
    QVERIFY(server.listen(QHostAddress::LocalHost, port));
    Peer again(port);
    QCOMPARE(again.take(textUpdateSize).size(), textUpdateSize);
}

void TestSimulatorServer::dropFromWithinAKey() {
    Listening server(still(PageId::Text));
    connect(&server, &SimulatorServer::keyReceived, &server, &SimulatorServer::drop);
    QSignalSpy keys(&server, &SimulatorServer::keyReceived);
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.send(keyFrame('a') + keyFrame('b'));
    QVERIFY(peer.waitForEnd());
    QTRY_COMPARE_WITH_TIMEOUT(server.connectionCount(), 0, patience);
    QVERIFY(!keys.isEmpty());
}

void TestSimulatorServer::listensOnIpv6() {
    SimulatorServer server(still(PageId::Text));
    QVERIFY(server.listen(QHostAddress::Any, 0));
    QSignalSpy connected(&server, &SimulatorServer::connected);
    Peer v4(server.port(), QHostAddress("127.0.0.3"));
    v4.take(textUpdateSize);
    QCOMPARE(connected.at(0).at(1).toString(),
             QString("127.0.0.1:%1").arg(v4.socket().localPort()));
    Peer v6(server.port(), QHostAddress::LocalHostIPv6);
    v6.take(textUpdateSize);
    QCOMPARE(connected.at(1).at(1).toString(), QString("[::1]:%1").arg(v6.socket().localPort()));
}

void TestSimulatorServer::portInUse() {
    Listening first(still(PageId::Text));
    SimulatorServer second(still(PageId::Text));
    QVERIFY(!second.listen(QHostAddress::LocalHost, first.port()));
    QVERIFY(!second.errorString().isEmpty());
}

void TestSimulatorServer::faults_data() {
    QTest::addColumn<QString>("fault");
    QTest::addColumn<QByteArray>("inFront"); // of the answer to a chat
    QTest::newRow("stray-bytes") << "stray-bytes" << QByteArrayLiteral("\r\n\0D>\xFF");
    QTest::newRow("unknown-tags") << "unknown-tags"
                                  << QByteArrayLiteral("<>\0\0\0\x13\0\0\0\0CHATunknown tag");
    QTest::newRow("unknown-types")
        << "unknown-types" << QByteArrayLiteral("<D>\0\0\0\x14\0\0\0\0bndlunknown type");
    QTest::newRow("single-bytes") << "single-bytes" << QByteArray();
    QTest::newRow("truncated-items") << "truncated-items" << QByteArray();
    QTest::newRow("oversized-items") << "oversized-items" << QByteArray();
}

void TestSimulatorServer::faults() {
    QFETCH(QString, fault);
    QFETCH(QByteArray, inFront);
    SimulatorSettings settings = still(PageId::Text);
    settings.faults = {fault.toStdString()};
    Listening server(settings);
    Peer peer(server.port());
    QTRY_VERIFY_WITH_TIMEOUT(peer.rest().endsWith(QByteArrayLiteral("R\0\0\0\x03\0\x01\x01")),
                             patience);
    const QByteArray first = peer.take(peer.rest().size());
    const QByteArray screen = "<D>" + QByteArrayLiteral("\0\0\x02\x9A") +
                              QByteArray::fromStdString(server.screen(1).updatePacket());
    QVERIFY(first.endsWith(screen));
    const QByteArray extra = first.chopped(screen.size());
    if (fault == "truncated-items") {
        QCOMPARE(extra, QByteArrayLiteral("<D>\0\0\x02\x98") + screen.sliced(7).chopped(2));
    } else if (fault == "oversized-items") {
        QByteArray oversized = screen;
        oversized.replace(16, 4, QByteArrayLiteral("\0\0\x02\x8E"));
        QCOMPARE(extra, oversized);
    } else {
        QCOMPARE(extra.isEmpty(), fault == "single-bytes");
    }
    peer.send(QByteArrayLiteral("<D>\0\0\0\x09\0\0\0\0CHATx"));
    const QByteArray answer = QByteArrayLiteral("<D>\0\0\0\x10\0\0\0\0CHATNorth: x");
    QCOMPARE(peer.take(inFront.size() + answer.size()), inFront + answer);
}

void TestSimulatorServer::halfFrameThenSilence() {
    SimulatorSettings settings = still(PageId::Text);
    settings.faults = {"half-frame"};
    Listening server(settings);
    Peer peer(server.port());
    peer.take(textUpdateSize);
    QSignalSpy packets(&server, &SimulatorServer::packetReceived);
    peer.send(QByteArrayLiteral("<D>\0\0\0\x09\0\0\0\0CHATx"));
    QCOMPARE(peer.take(11), QByteArrayLiteral("<D>\0\0\0\x10\0\0\0\0"));
    peer.send(keyFrame('a') + QByteArrayLiteral("<D>\0\0\0\x09\0\0\0\0CHATy"));
    QTRY_COMPARE_WITH_TIMEOUT(packets.size(), 3, patience);
    server.tick(250ms);
    server.drop(1);
    QVERIFY(peer.waitForEnd());
    QCOMPARE(peer.rest(), QByteArray());
}

void TestSimulatorServer::abruptClose() {
    SimulatorSettings settings = still(PageId::Text);
    settings.faults = {"abrupt-close"};
    Listening server(settings);
    Peer peer(server.port());
    peer.take(textUpdateSize);
    peer.send(QByteArrayLiteral("<D>\0\0\0\x09\0\0\0\0CHATx"));
    QVERIFY(peer.waitForEnd());
    QCOMPARE(peer.rest(), QByteArrayLiteral("<D>\0\0\0\x10\0\0\0\0"));
    waitUntilConnected(server, 0);
}

void TestSimulatorServer::namesAndNumbers() {
    SimulatorSettings settings = still(PageId::Text);
    settings.instrument.name = "A name far too long for the forty columns of the screen";
    Listening server(settings);
    Peer peer(server.port());
    QCOMPARE(rowOf(peer.take(textUpdateSize), 1),
             QByteArray(" \x04 A name far too long for the for TEXT "));
}

int main(int argc, char** argv) {
    return runTest<TestSimulatorServer>(argc, argv);
}

#include "test_simulatorserver.moc"
