// Simulated instruments on a real socket, byte by byte.

#include "SimulatorServer.h"
#include "TestEnvironment.h"

#include <QSignalSpy>
#include <QTcpSocket>

namespace {

constexpr int patience = 30000; // ms; only a failure waits that long

/// A frame around what `packet` says, length bytes included by hand.
QByteArray operator""_bytes(const char* text, std::size_t size) {
    return {text, static_cast<qsizetype>(size)};
}

SimulatorSettings still(PageId page) {
    SimulatorSettings settings;
    settings.instrument.page = page;
    settings.updatesPerSecond = 0;
    return settings;
}

/// A watcher that is nothing but a socket.
class Peer {
public:
    explicit Peer(const SimulatorServer& server) {
        m_socket.connectToHost(QHostAddress::LocalHost, server.port());
    }

    void send(const QByteArray& bytes) { m_socket.write(bytes); }
    QTcpSocket& socket() { return m_socket; }

    /// Everything received so far, once it is at least `size` bytes.
    QByteArray received(qsizetype size) {
        const auto enough = [this, size] {
            m_all += m_socket.readAll();
            return m_all.size() >= size;
        };
        if (!QTest::qWaitFor(enough, patience))
            qWarning("only %lld bytes came", static_cast<long long>(m_all.size()));
        return m_all;
    }

private:
    QTcpSocket m_socket;
    QByteArray m_all;
};

/// The bytes of one text update: "<D>", length 666, 4 zero bytes, "BNDL", T, A and R.
constexpr qsizetype textUpdateSize = 7 + 8 + (5 + 320) + (5 + 320) + (5 + 3);

} // namespace

class TestSimulatorServer : public QObject {
    Q_OBJECT

private slots:
    void firstScreen();
    void keyOnTheKeysPage();
};

void TestSimulatorServer::firstScreen() {
    SimulatorServer server(still(PageId::Keys));
    QVERIFY(server.listen(QHostAddress::LocalHost, 0));
    Peer peer(server);
    const QByteArray bytes = peer.received(textUpdateSize);
    QCOMPARE(bytes.size(), textUpdateSize);
    QCOMPARE(bytes.first(20), "<D>\0\0\x02\x9A\0\0\0\0BNDLT\0\0\x01\x40"_bytes);
    QCOMPARE(bytes.sliced(340, 5), "A\0\0\x01\x40"_bytes);
    QCOMPARE(bytes.last(8), "R\0\0\0\x03\0\x01\x01"_bytes);
}

void TestSimulatorServer::keyOnTheKeysPage() {
    SimulatorServer server(still(PageId::Keys));
    QVERIFY(server.listen(QHostAddress::LocalHost, 0));
    QSignalSpy keys(&server, &SimulatorServer::keyReceived);
    Peer peer(server);
    peer.send("<D>\0\0\0\x0A\0\0\0\0KEYS\x61\x01"_bytes);
    QTRY_COMPARE_WITH_TIMEOUT(keys.size(), 1, patience);
    QCOMPARE(keys.first(), (QVariantList{1, QVariant::fromValue(quint16{0x6101})}));
    QCOMPARE(server.keys(1), QList<quint16>{0x6101});
    const QByteArray update = peer.received(2 * textUpdateSize).sliced(textUpdateSize);
    const QByteArray secondRow = update.sliced(20 + 40, 40);
    QCOMPARE(secondRow, "\xB3     1 \xB3 0x6101 \xB3 Shift+F2            \xB3"_bytes);
}

int main(int argc, char** argv) {
    return runTest<TestSimulatorServer>(argc, argv);
}

#include "test_simulatorserver.moc"
