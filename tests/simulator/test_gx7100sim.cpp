// The program itself: started as a process, driven over TCP, ended by a signal.

#include "Peer.h"
#include "TestEnvironment.h"

#include <QProcess>
#include <QRegularExpression>

#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

class TestGx7100sim : public QObject {
    Q_OBJECT

private slots:
    void serves();
    void repeatsItselfBySeed();
    void announcesEveryAddress();
    void endsOnASignal_data();
    void endsOnASignal();
    void portInUse();
    void wrongArguments();
    void help();
    void runsOutOfFiles();
    void serialLine();
};

namespace {

/// The program in a process of its own; ended with this object.
class Program {
public:
    explicit Program(const QStringList& arguments) {
        m_process.start(QStringLiteral(GX7100SIM_PROGRAM), arguments);
    }
    /// The same through a shell, which first does what `prelude` says.
    Program(const QString& prelude, const QStringList& arguments) {
        m_process.start("/bin/sh", QStringList{"-c", prelude + "; exec \"$0\" \"$@\"",
                                               QStringLiteral(GX7100SIM_PROGRAM)} +
                                       arguments);
    }
    ~Program() {
        m_process.kill();
        m_process.waitForFinished(patience);
    }
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    QProcess& process() { return m_process; }

    /// The next line on standard output, without its end.
    QString line() {
        if (!QTest::qWaitFor([this] { return m_process.canReadLine(); }, patience))
            qWarning("no line came; on standard error: %s",
                     m_process.readAllStandardError().constData());
        return QString::fromLocal8Bit(m_process.readLine()).trimmed();
    }

    /// The port out of the line that says where it listens.
    quint16 port() {
        const QString text = line();
        const auto match = QRegularExpression("^Listening on .*, port (\\d+)$").match(text);
        if (!match.hasMatch())
            qWarning("not what was expected: %s", qPrintable(text));
        return match.captured(1).toUShort();
    }

private:
    QProcess m_process;
};

/// A serial port as a file, without the settings of one: the simulator's need none.
class Port {
public:
    explicit Port(const QString& name)
        : m_descriptor(open(qPrintable(name), O_RDWR | O_NOCTTY | O_NONBLOCK)) {}
    ~Port() { close(m_descriptor); }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    bool send(const QByteArray& bytes) {
        return write(m_descriptor, bytes.data(), static_cast<std::size_t>(bytes.size())) ==
               bytes.size();
    }

    /// The next `size` bytes, waiting for them; fewer only when they do not come.
    QByteArray take(qsizetype size) {
        QByteArray taken(size, '\0');
        qsizetype count = 0;
        const auto readOn = [&] {
            const ssize_t more =
                read(m_descriptor, taken.data() + count, static_cast<std::size_t>(size - count));
            count += std::max<ssize_t>(more, 0);
            return count == size;
        };
        return QTest::qWaitFor(readOn, patience) ? taken : taken.first(count);
    }

private:
    int m_descriptor;
};

QByteArray keyFrame(int code) {
    return QByteArrayLiteral("<D>\0\0\0\x0A\0\0\0\0KEYS") + static_cast<char>(code >> 8) +
           static_cast<char>(code & 0xFF);
}

} // namespace

void TestGx7100sim::serves() {
    Program program({"--listen", "127.0.0.2", "--port", "0", "--rate", "0", "--page", "entry",
                     "--name", "East", "--seed", "1"});
    const QString listening = program.line();
    const auto match =
        QRegularExpression("^Listening on 127\\.0\\.0\\.2, port (\\d+)$").match(listening);
    QVERIFY2(match.hasMatch(), qPrintable(listening));
    Peer peer(match.captured(1).toUShort(), QHostAddress("127.0.0.2"));
    const QByteArray first = peer.take(textUpdateSize);
    QCOMPARE(first.sliced(20, 40), QByteArray(" \x04 East                            EDIT "));
    QCOMPARE(program.line(),
             QString("Connected: instrument 1, from 127.0.0.1:%1").arg(peer.socket().localPort()));
    peer.send(keyFrame('q'));
    QCOMPARE(peer.take(textUpdateSize).sliced(20 + 80, 4), QByteArray("\xB3 q "));
    peer.send(QByteArrayLiteral("<D>\0\0\0\x09\0\0\0\0CHATx"));
    QCOMPARE(peer.take(22), QByteArrayLiteral("<D>\0\0\0\x0F\0\0\0\0CHATEast: x"));
    peer.socket().disconnectFromHost();
    QCOMPARE(program.line(), QString("Disconnected: instrument 1"));
}

void TestGx7100sim::repeatsItselfBySeed() {
    const auto run = [](const QString& seed) {
        Program program({"--listen", "127.0.0.1", "--port", "0", "--rate", "200", "--page", "home",
                         "--seed", seed});
        Peer peer(program.port());
        return peer.take(20 * textUpdateSize);
    };
    const QByteArray once = run("5");
    QCOMPARE(run("5"), once);
    QVERIFY(run("6") != once);
}

void TestGx7100sim::announcesEveryAddress() {
    Program program({"--port", "0"});
    const QString line = program.line();
    QVERIFY2(line.startsWith("Listening on all addresses, port "), qPrintable(line));
    const quint16 port = line.section(' ', -1).toUShort();
    Peer v4(port, QHostAddress("127.0.0.9"));
    QCOMPARE(v4.take(3), QByteArray("<D>"));
    Peer v6(port, QHostAddress::LocalHostIPv6);
    QCOMPARE(v6.take(3), QByteArray("<D>"));
}

void TestGx7100sim::endsOnASignal_data() {
    QTest::addColumn<int>("signal");
    QTest::newRow("SIGINT") << SIGINT;
    QTest::newRow("SIGTERM") << SIGTERM;
}

void TestGx7100sim::endsOnASignal() {
    QFETCH(int, signal);
    Program program({"--listen", "127.0.0.1", "--port", "0"});
    Peer peer(program.port());
    peer.take(textUpdateSize);
    QCOMPARE(::kill(static_cast<pid_t>(program.process().processId()), signal), 0);
    QVERIFY(program.process().waitForFinished(patience));
    QCOMPARE(program.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(program.process().exitCode(), 0);
    QCOMPARE(program.process().readAllStandardError(), QByteArray());
    QVERIFY(peer.waitForEnd());
}

void TestGx7100sim::portInUse() {
    Program first({"--listen", "127.0.0.1", "--port", "0"});
    const QString port = QString::number(first.port());
    Program second({"--listen", "127.0.0.1", "--port", port});
    QVERIFY(second.process().waitForFinished(patience));
    QCOMPARE(second.process().exitCode(), 1);
    QCOMPARE(second.process().readAllStandardOutput(), QByteArray());
    QCOMPARE(QString::fromLocal8Bit(second.process().readAllStandardError()),
             QString("gx7100sim: cannot listen on 127.0.0.1, port %1: The bound address is "
                     "already in use\n")
                 .arg(port));
}

void TestGx7100sim::wrongArguments() {
    Program program({"--page", "nowhere"});
    QVERIFY(program.process().waitForFinished(patience));
    QCOMPARE(program.process().exitCode(), 2);
    QCOMPARE(program.process().readAllStandardOutput(), QByteArray());
    QVERIFY(program.process().readAllStandardError().contains("nowhere"));
}

void TestGx7100sim::help() {
    Program program({"--help"});
    QVERIFY(program.process().waitForFinished(patience));
    QCOMPARE(program.process().exitCode(), 0);
    QVERIFY(program.process().readAllStandardOutput().contains("--fault"));
    QCOMPARE(program.process().readAllStandardError(), QByteArray());
}

void TestGx7100sim::runsOutOfFiles() {
    Program program("ulimit -n 40", {"--listen", "127.0.0.1", "--port", "0", "--rate", "0"});
    const quint16 port = program.port();
    constexpr std::size_t allowed = 8;
    std::vector<std::unique_ptr<Peer>> peers(allowed);
    for (auto& peer : peers) {
        peer = std::make_unique<Peer>(port);
        QCOMPARE(peer->take(textUpdateSize).size(), textUpdateSize);
    }
    Peer tooMany(port);
    QVERIFY(tooMany.waitForEnd());
    QCOMPARE(tooMany.rest(), QByteArray());
    for (std::size_t i = 0; i < allowed; ++i)
        program.line();
    peers.front()->socket().disconnectFromHost();
    QCOMPARE(program.line(), QString("Disconnected: instrument 1"));
    Peer later(port);
    QCOMPARE(later.take(textUpdateSize).size(), textUpdateSize);
}

void TestGx7100sim::serialLine() {
    Program program({"--serial", "--baud", "0", "--rate", "0", "--page", "entry"});
    const QString first = program.line();
    QVERIFY2(first.startsWith("Serial port: /dev/"), qPrintable(first));
    {
        Port port(first.section(' ', -1));
        QCOMPARE(program.line(), QString("Connected"));
        QCOMPARE(port.take(4 + 320).first(4), QByteArray("T\n\x01\x40"));
        QCOMPARE(port.take(4 + 320).first(4), QByteArray("A\n\x01\x40"));
        QCOMPARE(port.take(4 + 3).first(4), QByteArray("R\n\0\x03", 4));

        // A file of the nine digits.
        QVERIFY(port.send(QByteArray("Y\0\x09ID:CATCH\n", 12)));
        QCOMPARE(port.take(5), QByteArray("X\n\0\x01K", 5));
        QVERIFY(port.send(QByteArray("X\0\x01\x05", 4)));
        QCOMPARE(port.take(5), QByteArray("X\n\0\x01\x06", 5));
        QVERIFY(
            port.send(QByteArray::fromHex("580001 1d 58000f 0001000b 313233343536373839 e13e")));
        QCOMPARE(port.take(5), QByteArray("X\n\0\x01\0", 5));
        QVERIFY(port.send(QByteArray::fromHex("580001 1d 580006 00020002cae2")));
        QCOMPARE(port.take(5), QByteArray("X\n\0\x01\0", 5));
        QCOMPARE(program.line(), QString("File received: 9 bytes, CRC-32 cbf43926"));
        QCOMPARE(program.line(), QString("File transfer: done"));
    }
    QCOMPARE(program.line(), QString("Disconnected"));
}

int main(int argc, char** argv) {
    return runTest<TestGx7100sim>(argc, argv);
}

#include "test_gx7100sim.moc"
