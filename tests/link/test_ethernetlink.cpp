#include "LinkFixture.h"
#include "Packet.h"
#include "TestEnvironment.h"

#include <QAbstractEventDispatcher>
#include <QElapsedTimer>

#include <sys/socket.h>

#include <algorithm>
#include <string>
#include <utility>

using namespace std::string_literals;

namespace {

std::string manyBytes(std::size_t count) {
    std::string bytes;
    bytes.resize(count, 'm');
    return bytes;
}

/// The link's own socket, for what only it can tell.
QTcpSocket& socketOf(ConnectGX7100Ethernet& link) {
    return *link.findChild<QTcpSocket*>();
}

/// Counts the attempts to connect that a link makes.
class AttemptCounter : public QObject {
    Q_OBJECT

public:
    explicit AttemptCounter(ConnectGX7100Ethernet& link) {
        connect(&socketOf(link), &QTcpSocket::stateChanged, this,
                [this](QAbstractSocket::SocketState state) {
                    if (state == QAbstractSocket::ConnectingState)
                        ++count;
                });
    }
    int count = 0;
};

} // namespace

/// The TCP link with an instrument that answers.
class TestEthernetLink : public QObject {
    Q_OBJECT

private slots:
    void connectsTo_data() {
        QTest::addColumn<QString>("address");
        QTest::newRow("127.0.0.1") << QStringLiteral("127.0.0.1");
        QTest::newRow("127.0.0.2") << QStringLiteral("127.0.0.2");
        QTest::newRow("127.70.0.100") << QStringLiteral("127.70.0.100");
        QTest::newRow("::1") << QStringLiteral("::1");
    }
    void connectsTo() {
        QFETCH(const QString, address);
        Instrument instrument{QHostAddress(address)};
        Subject subject;
        QVERIFY(!subject.link->IsOpen());

        subject.link->Connect(address.toStdString(), 0, instrument.port());
        QVERIFY(subject.told().isEmpty());
        QVERIFY(subject.link->IsOpen());

        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"connected"}, patience);
        QCOMPARE(instrument.line().localAddress(), QHostAddress(address));
        QVERIFY(subject.link->IsOpen());
        QCOMPARE(socketOf(*subject.link).socketOption(QAbstractSocket::LowDelayOption).toInt(), 1);
    }

    /// The dialog connects, then the tile does once more: one connection.
    void connectTwiceConnectsOnce() {
        Instrument instrument;
        Subject subject;
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"connected"}, patience);
        settle();
        QCOMPARE(instrument.accepted(), std::size_t(1));
        QCOMPARE(subject.told(), QStringList{"connected"});
    }

    void whatWaitsIsGoneAfterDisconnect() {
        Instrument first;
        Instrument second;
        Subject subject;
        subject.link->Connect("127.0.0.1", 0, first.port());
        subject.connectTo(first);
        subject.link->Disconnect();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        subject.connectTo(second);
        second.line();
        settle();
        QCOMPARE(first.accepted(), std::size_t(1));
        QCOMPARE(second.accepted(), std::size_t(1));
    }

    void aLossIsNotRepaired() {
        Instrument instrument;
        Subject subject;
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        subject.connectTo(instrument);
        AttemptCounter attempts(*subject.link);
        instrument.line().close();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        settle();
        QCOMPARE(attempts.count, 0);
        QVERIFY(!subject.link->IsOpen());
    }

    void sendsRawBytes() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        subject.link->slotTo(ConnectGX7100::sendKey(0x0141));
        subject.link->Send("raw\0"s);
        subject.link->Send("");
        subject.link->slotTo(ConnectGX7100::sendChat(QStringLiteral("hi")));
        const std::string expected =
            "<D>\0\0\0\x0A\0\0\0\0KEYS\1Araw\0<D>\0\0\0\x0A\0\0\0\0CHAThi"s;
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().peek(1000).toStdString(), expected, patience);
    }

    void sendWithoutAConnectionIsDropped() {
        Instrument instrument;
        Subject subject;
        subject.link->Send("before");
        subject.connectTo(instrument);
        subject.link->Disconnect();
        subject.link->Send("between");
        subject.journal.entries.clear();
        subject.connectTo(instrument);
        subject.link->Send("seen");
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line(1).bytesAvailable(), 4, patience);
        QCOMPARE(instrument.line(1).readAll(), "seen");
        QCOMPARE(instrument.line(0).readAll(), "");
    }

    void hugeSend() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        std::string sent = manyBytes(9'000'001);
        for (std::size_t i = 0; i < sent.size(); ++i)
            sent[i] = static_cast<char>(i % 251);
        subject.link->Send(sent);
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().bytesAvailable(), qint64(sent.size()),
                                  patience);
        QVERIFY(instrument.line().readAll().toStdString() == sent);
    }

    void receives_data() {
        QTest::addColumn<QByteArray>("stream");
        QTest::addColumn<QStringList>("packets");
        const auto bytes = [](const std::string& text) { return QByteArray::fromStdString(text); };
        QTest::newRow("one") << bytes("<D>\0\0\0\3one"s) << QStringList{"one"};
        QTest::newRow("several") << bytes("<D>\0\0\0\1a<D>\0\0\0\1b<D>\0\0\0\1c"s)
                                 << QStringList{"a", "b", "c"};
        QTest::newRow("empty") << bytes("<D>\0\0\0\0<D>\0\0\0\0"s) << QStringList{"", ""};
        QTest::newRow("other tags")
            << bytes("<X>\0\0\0\1x<d>\0\0\0\1d<DD>\0\0\0\1e<>\0\0\0\1f<<D>\0\0\0\1g<D>\0\0\0\1y"s)
            << QStringList{"y"};
        QTest::newRow("stray bytes")
            << bytes("stray<D>\0\0\0\1a>>>><D>\0\0\0\1b"s) << QStringList{"a", "b"};
    }
    void receives() {
        QFETCH(const QByteArray, stream);
        QFETCH(const QStringList, packets);
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);

        instrument.line().write(stream);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"connected"} + packets, patience);

        subject.journal.entries.clear();
        for (const char byte : stream) {
            instrument.line().write(&byte, 1);
            instrument.line().flush();
            QCoreApplication::processEvents();
        }
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), packets, patience);
    }
    void framesOfOneReadComeBeforeTheNext_data() { receives_data(); }
    void framesOfOneReadComeBeforeTheNext() {
        QFETCH(QByteArray, stream);
        QFETCH(const QStringList, packets);
        Subject subject;
        subject.link->incoming(stream);
        QCOMPARE(subject.told(), packets);
    }

    /// However much an instrument sends: nothing is lost, and little is held.
    void flood() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        const QByteArray frame =
            QByteArray::fromStdString("<D>\0\0\x40\0"s) + QByteArray(16384, 'f');
        constexpr int frames = 1000;
        int received = 0;
        qint64 held = 0;
        connect(subject.link.get(), &ConnectGX7100::signalFrom, this,
                [&](const std::string& packet) {
                    received += packet == std::string(16384, 'f') ? 1 : 0;
                    // The operator drags a window: the event loop runs, and nobody reads.
                    if (received == 1) {
                        QVERIFY(QTest::qWaitFor(
                            [&] {
                                return socketOf(*subject.link).bytesAvailable() >=
                                       ConnectGX7100Ethernet::bytesPerTurn;
                            },
                            patience));
                        settle();
                    }
                    held = std::max(held, socketOf(*subject.link).bytesAvailable());
                });
        for (int i = 0; i < frames; ++i)
            instrument.line().write(frame);
        QTRY_COMPARE_WITH_TIMEOUT(received, frames, patience);
        QVERIFY2(held <= ConnectGX7100Ethernet::bytesPerTurn, QByteArray::number(held).constData());
    }

    /// An instrument that sends as fast as it can does not keep the event loop from the others.
    void aFloodTakesPartOfATurn_data() {
        QTest::addColumn<int>("size");
        QTest::newRow("empty packets") << 0;
        QTest::newRow("small packets") << 9;
        QTest::newRow("screen updates") << 666;
        QTest::newRow("packets of many turns") << 100'000;
    }
    void aFloodTakesPartOfATurn() {
        QFETCH(const int, size);
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        const int frameSize = size + 7;
        const int frames = 3'000'000 / frameSize;
        // One frame may have begun in an earlier turn.
        const int atMost = static_cast<int>(ConnectGX7100Ethernet::bytesPerTurn) / frameSize + 1;
        int received = 0;
        int receivedWhenPosted = 0;
        int mostBeforePosted = 0;
        bool isPosted = false;
        // What it still has to do at the end goes with it.
        QObject somebodyElse;
        connect(subject.link.get(), &ConnectGX7100::signalFrom, this, [&](const std::string&) {
            ++received;
            if (std::exchange(isPosted, true))
                return;
            receivedWhenPosted = received;
            QMetaObject::invokeMethod(
                &somebodyElse,
                [&] {
                    isPosted = false;
                    mostBeforePosted = std::max(mostBeforePosted, received - receivedWhenPosted);
                },
                Qt::QueuedConnection);
        });
        const QByteArray length = QByteArray::fromStdString(packet::fourByteValue(unsigned(size)));
        const QByteArray frame = "<D>" + length + QByteArray(size, 'f');
        instrument.line().write(frame.repeated(frames));
        QElapsedTimer clock;
        clock.start();
        int turns = 0;
        while (received < frames && !clock.hasExpired(patience)) {
            const int before = received;
            QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
            QVERIFY2(received - before <= atMost, QByteArray::number(received - before));
            turns += received > before ? 1 : 0;
        }
        QCOMPARE(received, frames);
        QVERIFY(turns >= frames / atMost);
        QVERIFY2(mostBeforePosted <= 2 * atMost, QByteArray::number(mostBeforePosted));
    }

    /// What an instrument sent before it closed the connection is told first, however much it is.
    void theLastOfAFloodIsNotLost() {
        Instrument instrument;
        Subject subject;
        Operator person;
        subject.connectTo(instrument);
        constexpr int frames = 20'000;
        instrument.line().write(QByteArray::fromStdString("<D>\0\0\0\1x"s).repeated(frames));
        instrument.line().disconnectFromHost();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told().size(), frames + 2, patience);
        QCOMPARE(subject.told().count("x"), frames);
        QCOMPARE(subject.told().last(), "disconnected");
        QVERIFY(person.boxes.empty());
    }

    void theInstrumentCloses() {
        Instrument instrument;
        Subject subject;
        Operator person;
        subject.connectTo(instrument);
        instrument.line().write(QByteArray::fromStdString("<D>\0\0\0\4last"s));
        instrument.line().disconnectFromHost();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(),
                                  (QStringList{"connected", "last", "disconnected"}), patience);
        QVERIFY(!subject.link->IsOpen());
        settle();
        QCOMPARE(subject.told().count("disconnected"), 1);
        QVERIFY(person.boxes.empty());
    }

    void theInstrumentResets() {
        Instrument instrument;
        Subject subject;
        Operator person;
        subject.connectTo(instrument);
        subject.link->Send("unread");
        QTRY_VERIFY_WITH_TIMEOUT(instrument.line().bytesAvailable() > 0, patience);
        // Closing with a linger time of 0 resets the connection.
        const linger hard{1, 0};
        setsockopt(int(instrument.line().socketDescriptor()), SOL_SOCKET, SO_LINGER, &hard,
                   sizeof(hard));
        instrument.line().abort();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        settle();
        QCOMPARE(subject.told().count("disconnected"), 1);
        QVERIFY(person.boxes.empty());
    }

    void disconnectWithoutAConnection() {
        Subject subject;
        subject.link->Disconnect();
        QCOMPARE(subject.told(), QStringList{"disconnected"});
        QVERIFY(!subject.link->IsOpen());
        settle();
        QCOMPARE(subject.told(), QStringList{"disconnected"});
    }

    void disconnectEndsTheConnection() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        subject.link->Send("last words");
        subject.link->Disconnect();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        QVERIFY(!subject.link->IsOpen());
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().state(), QAbstractSocket::UnconnectedState,
                                  patience);
        QCOMPARE(instrument.line().readAll(), "last words");
        QCOMPARE(subject.told().count("disconnected"), 1);
    }

    /// No answer may come for minutes; the operator is not made to wait for it.
    void disconnectEndsAnAttempt() {
        const SilentPort silent;
        Instrument instrument;
        Subject subject;
        Operator person;
        subject.link->Connect("127.0.0.1", 0, silent.port());
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        settle();
        QVERIFY(subject.told().isEmpty());
        subject.link->Disconnect();
        QCOMPARE(subject.told(), QStringList{"disconnected"});
        QVERIFY(!subject.link->IsOpen());

        subject.connectTo(instrument);
        settle();
        QCOMPARE(subject.told(), (QStringList{"disconnected", "connected"}));
        QVERIFY(person.boxes.empty());
    }

    void whatWasSentBeforeDisconnectArrives() {
        Instrument instrument;
        Subject subject(nullptr, std::chrono::milliseconds(patience));
        subject.connectTo(instrument);
        const std::string sent = manyBytes(20'000'000);
        subject.link->Send(sent);
        subject.link->Disconnect();
        subject.link->Disconnect();
        QCOMPARE(subject.told(), QStringList{"connected"});
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().bytesAvailable(), qint64(sent.size()),
                                  patience);
    }

    /// An instrument that has stopped reading cannot hold the link.
    void disconnectFromAnInstrumentThatDoesNotRead() {
        Instrument instrument;
        Subject subject(nullptr, std::chrono::milliseconds(20));
        Operator person;
        subject.connectTo(instrument);
        instrument.line().setReadBufferSize(1);
        subject.link->Send(manyBytes(50'000'000));
        subject.link->Disconnect();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        QVERIFY(!subject.link->IsOpen());
        settle();
        QCOMPARE(subject.told().count("disconnected"), 1);
        QVERIFY(person.boxes.empty());
    }

    void connectWhileTheLastBytesLeave() {
        Instrument slow;
        Instrument next;
        Subject subject(nullptr, std::chrono::milliseconds(20));
        subject.connectTo(slow);
        slow.line().setReadBufferSize(1);
        subject.link->Send(manyBytes(50'000'000));
        subject.link->Disconnect();
        subject.link->Connect("127.0.0.1", 0, next.port());
        QCOMPARE(subject.told(), QStringList{"connected"});
        QTRY_COMPARE_WITH_TIMEOUT(
            subject.told(), (QStringList{"connected", "disconnected", "connected"}), patience);
        subject.link->Send("only this");
        QTRY_COMPARE_WITH_TIMEOUT(next.line().peek(1000), QByteArray("only this"), patience);
    }

    /// Half a frame of one connection is not the beginning of the next one's.
    void aConnectionStartsWithAFrame() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        instrument.line().write(QByteArray::fromStdString("<D>\0\0\1\0half"s));
        instrument.line().disconnectFromHost();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        subject.journal.entries.clear();
        subject.connectTo(instrument);
        instrument.line(1).write(QByteArray::fromStdString("<D>\0\0\0\5whole"s));
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "whole"}), patience);
    }
};

int main(int argc, char** argv) {
    return runTest<TestEthernetLink>(argc, argv);
}

#include "test_ethernetlink.moc"
