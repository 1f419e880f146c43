#include "LinkFixture.h"
#include "TestEnvironment.h"

#include <QNetworkInterface>
#include <QWidget>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <string>

using namespace std::string_literals;

namespace {

const QString refusedText = QStringLiteral(
    "The connection was refused by the peer. Make sure the GX-7100 is running, and check that the "
    "host name and port settings are correct.");
const QString notFoundText =
    QStringLiteral("The host was not found. Please check the host name and port settings.");

/// The broadcast address of the loopback network: connecting to it fails on the spot.
const std::string unreachable = "127.255.255.255";

/// The interface that has 127.0.0.1; every computer has one.
int loopbackIndex() {
    return QNetworkInterface::interfaceFromName(QStringLiteral("lo")).index();
}

int attemptsSeen(QList<QAbstractSocket::SocketState>& states) {
    return int(states.count(QAbstractSocket::ConnectingState));
}

/// The states that the link's socket goes through.
void follow(ConnectGX7100Ethernet& link, QList<QAbstractSocket::SocketState>& states) {
    auto* const socket = link.findChild<QTcpSocket*>();
    QObject::connect(socket, &QTcpSocket::stateChanged, socket,
                     [&states](QAbstractSocket::SocketState state) { states.append(state); });
}

/// Reading and writing a directory fails in the way of a network that is gone.
void breakNetworkUnder(ConnectGX7100Ethernet& link) {
    const int broken = open("/", O_RDONLY | O_DIRECTORY);
    dup2(broken, int(link.findChild<QTcpSocket*>()->socketDescriptor()));
    close(broken);
}

} // namespace

/// What the operator is told when there is no connection, and when.
class TestEthernetFailures : public QObject {
    Q_OBJECT

private:
    static void compareBox(const Operator::Seen& box, const QString& text, QWidget* parent) {
        QCOMPARE(box.title, QStringLiteral("Connect GX-7100"));
        QCOMPARE(box.text, text);
        QCOMPARE(box.buttons, QMessageBox::StandardButtons(QMessageBox::Ok));
        QCOMPARE(box.icon, QMessageBox::Information);
        QCOMPARE(box.parent.data(), parent);
    }

private slots:
    void refusedTwice() {
        const RefusingPort port;
        QWidget window;
        Subject subject(&window);
        Operator person;
        person.journal = &subject.journal;
        QList<QAbstractSocket::SocketState> states;
        follow(*subject.link, states);
        subject.link->Connect("127.0.0.1", 0, port.port());
        subject.link->Connect("127.0.0.1", 0, port.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"box", "disconnected"}), patience);
        compareBox(person.boxes[0], refusedText, &window);
        QCOMPARE(attemptsSeen(states), 2);
        QVERIFY(!subject.link->IsOpen());
        settle();
        QCOMPARE(subject.told(), (QStringList{"box", "disconnected"}));
    }

    void refusedOnce() {
        const RefusingPort port;
        Instrument instrument;
        Subject subject;
        Operator person;
        subject.link->Connect("127.0.0.1", 0, port.port());
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"connected"}, patience);
        subject.link->Send("works");
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().peek(1000), QByteArray("works"), patience);
        QVERIFY(person.boxes.empty());
    }

    void asManyTriesAsWereAskedFor() {
        const RefusingPort port;
        Subject subject;
        Operator person;
        QList<QAbstractSocket::SocketState> states;
        follow(*subject.link, states);
        for (int i = 0; i < 7; ++i)
            subject.link->Connect("127.0.0.1", 0, port.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(attemptsSeen(states), 7);
        QCOMPARE(person.boxes.size(), std::size_t(1));
    }

    /// The tile connects its slots between the two calls, and must not miss anything.
    void anAttemptThatFailsOnTheSpot() {
        Subject subject;
        Operator person;
        person.journal = &subject.journal;
        QList<QAbstractSocket::SocketState> states;
        follow(*subject.link, states);
        subject.link->Connect(unreachable, 0, 7100);
        QCOMPARE(attemptsSeen(states), 1);
        QCOMPARE(states.last(), QAbstractSocket::UnconnectedState);
        QVERIFY(subject.link->IsOpen());
        subject.link->Connect(unreachable, 0, 7100);
        QCOMPARE(attemptsSeen(states), 1);
        QVERIFY(subject.told().isEmpty());

        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"box", "disconnected"}), patience);
        QCOMPARE(attemptsSeen(states), 2);
        QVERIFY(!subject.link->IsOpen());
        settle();
        QCOMPARE(subject.told(), (QStringList{"box", "disconnected"}));
    }

    void disconnectBeforeTheFailureIsTold() {
        Subject subject;
        Operator person;
        subject.link->Connect(unreachable, 0, 7100);
        subject.link->Disconnect();
        QCOMPARE(subject.told(), QStringList{"disconnected"});
        QVERIFY(!subject.link->IsOpen());
        settle();
        QCOMPARE(subject.told(), QStringList{"disconnected"});
        QVERIFY(person.boxes.empty());
    }

    void networkErrorNamesWhereTo_data() {
        QTest::addColumn<int>("interfaceIndex");
        QTest::addColumn<int>("port");
        QTest::addColumn<QString>("where");
        const QString scoped = QStringLiteral("127.255.255.255%%1:7100").arg(loopbackIndex());
        QTest::newRow("no interface") << 0 << 7100 << QStringLiteral("127.255.255.255:7100");
        QTest::newRow("any interface") << -1 << 7100 << QStringLiteral("127.255.255.255:7100");
        QTest::newRow("not an interface")
            << 999'999 << 7100 << QStringLiteral("127.255.255.255:7100");
        QTest::newRow("an interface") << loopbackIndex() << 7100 << scoped;
        QTest::newRow("another port") << 0 << 1 << QStringLiteral("127.255.255.255:1");
    }
    void networkErrorNamesWhereTo() {
        QFETCH(const int, interfaceIndex);
        QFETCH(const int, port);
        QFETCH(const QString, where);
        QWidget window;
        Subject subject(&window);
        Operator person;
        subject.link->Connect(unreachable, interfaceIndex, port);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(person.boxes.size(), std::size_t(1));
        compareBox(person.boxes[0],
                   QStringLiteral("Network error while trying to connect to:") + where, &window);
    }

    void namesAreNotLookedUp() {
        Instrument instrument;
        Subject subject;
        Operator person;
        subject.link->Connect("localhost", 0, instrument.port());
        subject.link->Connect("localhost", 0, instrument.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(person.boxes.size(), std::size_t(1));
        compareBox(person.boxes[0], notFoundText, nullptr);
        settle();
        QCOMPARE(instrument.accepted(), std::size_t(0));
    }

    /// Any other error is told at once, and what waits is not tried.
    void noDescriptorsLeft() {
        Instrument instrument;
        Subject subject;
        Operator person;
        rlimit limit{};
        getrlimit(RLIMIT_NOFILE, &limit);
        const rlimit none{0, limit.rlim_max};
        setrlimit(RLIMIT_NOFILE, &none);
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        setrlimit(RLIMIT_NOFILE, &limit);
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        QVERIFY(subject.told().isEmpty());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(person.boxes.size(), std::size_t(1));
        compareBox(person.boxes[0],
                   QStringLiteral("The following error occurred: Out of resources. (4)"), nullptr);
        settle();
        QCOMPARE(instrument.accepted(), std::size_t(0));
    }

    void errorTable_data() {
        QTest::addColumn<int>("error");
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("triesAgain");
        const auto other = [](int error) {
            return QStringLiteral("The following error occurred: Unknown error. (%1)").arg(error);
        };
        QTest::newRow("0") << 0 << refusedText << true;
        QTest::newRow("1") << 1 << QString() << false;
        QTest::newRow("2") << 2 << notFoundText << true;
        QTest::newRow("7") << 7 << QStringLiteral("Network error while trying to connect to:")
                           << true;
        for (const int error : {-1, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 19, 23})
            QTest::addRow("%d", error) << error << other(error) << false;
    }
    void errorTable() {
        QFETCH(const int, error);
        QFETCH(const QString, text);
        QWidget window;
        Subject subject(&window);
        Operator person;
        person.journal = &subject.journal;
        subject.link->OnSocketError(static_cast<QAbstractSocket::SocketError>(error));
        if (text.isEmpty()) {
            QCOMPARE(subject.told(), QStringList());
        } else {
            QCOMPARE(subject.told(), (QStringList{"box", "disconnected"}));
            compareBox(person.boxes[0], text, &window);
        }
    }

    /// The same with an attempt under way and another one waiting.
    void errorTableWithMoreToTry_data() { errorTable_data(); }
    void errorTableWithMoreToTry() {
        QFETCH(const int, error);
        QFETCH(const QString, text);
        QFETCH(const bool, triesAgain);
        const SilentPort silent;
        Subject subject;
        Operator person;
        person.journal = &subject.journal;
        subject.link->Connect("127.0.0.1", 0, silent.port());
        subject.link->Connect("127.0.0.1", 0, silent.port());
        subject.link->OnSocketError(static_cast<QAbstractSocket::SocketError>(error));
        if (text.isEmpty() || triesAgain) {
            QCOMPARE(subject.told(), QStringList());
            QVERIFY(subject.link->IsOpen());
        } else {
            QCOMPARE(subject.told(), (QStringList{"box", "disconnected"}));
            compareBox(person.boxes[0], text, nullptr);
            QVERIFY(!subject.link->IsOpen());
        }
    }

    /// A connection that breaks is told like a failed attempt, and announced once.
    void networkErrorOnAConnection_data() {
        QTest::addColumn<bool>("hasLeftOver");
        QTest::addColumn<QStringList>("expected");
        QTest::newRow("nothing waits") << false << QStringList{"connected", "box", "disconnected"};
        // Not tried again either: that would be a connection that nobody asked for.
        QTest::newRow("a try is left over") << true << QStringList{"connected", "disconnected"};
    }
    void networkErrorOnAConnection() {
        QFETCH(const bool, hasLeftOver);
        QFETCH(const QStringList, expected);
        Instrument instrument;
        Subject subject;
        Operator person;
        person.journal = &subject.journal;
        subject.connectTo(instrument);
        if (hasLeftOver)
            subject.link->Connect("127.0.0.1", 0, instrument.port());
        breakNetworkUnder(*subject.link);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), expected, patience);
        if (!hasLeftOver) {
            compareBox(person.boxes[0],
                       QStringLiteral("Network error while trying to connect to:127.0.0.1:%1")
                           .arg(instrument.port()),
                       nullptr);
        }
        settle();
        QCOMPARE(subject.told(), expected);
        QVERIFY(!subject.link->IsOpen());
        QCOMPARE(instrument.accepted(), std::size_t(1));
    }

    /// Who has left does not want to hear how the rest went.
    void networkErrorWhileTheLastBytesLeave() {
        Instrument instrument;
        Subject subject(nullptr, std::chrono::milliseconds(patience));
        Operator person;
        subject.connectTo(instrument);
        instrument.line().setReadBufferSize(1);
        subject.link->Send(std::string(50'000, 's'));
        subject.link->Disconnect();
        QCOMPARE(subject.told(), QStringList{"connected"});
        breakNetworkUnder(*subject.link);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "disconnected"}),
                                  patience);
        settle();
        QCOMPARE(subject.told(), (QStringList{"connected", "disconnected"}));
        QVERIFY(person.boxes.empty());
    }

    void disconnectForgetsWhereTo() {
        const SilentPort silent;
        Subject subject;
        Operator person;
        subject.link->Connect("127.0.0.1", 0, silent.port());
        subject.link->Disconnect();
        subject.link->OnSocketError(QAbstractSocket::NetworkError);
        QCOMPARE(person.boxes.size(), std::size_t(1));
        QCOMPARE(person.boxes[0].text, QStringLiteral("Network error while trying to connect to:"));
    }

    /// Error texts come from outside: they are shown as they are.
    void textsAreNotMarkup() {
        Subject subject;
        Qt::TextFormat format = Qt::AutoText;
        Operator person({[&format](QMessageBox& box) {
            format = box.textFormat();
            Operator::pressOk(box);
        }});
        subject.link->OnSocketError(QAbstractSocket::ConnectionRefusedError);
        QCOMPARE(person.boxes.size(), std::size_t(1));
        QCOMPARE(format, Qt::PlainText);
    }
};

int main(int argc, char** argv) {
    return runTest<TestEthernetFailures>(argc, argv);
}

#include "test_ethernetfailures.moc"
