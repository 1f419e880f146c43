#include "LinkFixture.h"
#include "TestEnvironment.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QNetworkInterface>
#include <QNetworkProxy>
#include <QThread>

#include <sched.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

/// The interfaces that the test is about. Alone in a network of their own both have the very same
/// link-local address, and only the scope tells them apart.
struct Network {
    QString first;
    QString second;
    QString firstAddress;
    QString secondAddress;
    bool isPrivate = false;
};

bool run(const QString& command) {
    return std::system(qPrintable(command)) == 0;
}

/// Whether packets find the way to the address: it comes with the interface, but not at once.
bool isReady(const QString& name) {
    return run(QStringLiteral("ip -6 route get fe80::7100 oif %1 | grep -q ^local").arg(name)) &&
           QNetworkInterface::interfaceFromName(name).flags().testFlag(
               QNetworkInterface::IsRunning);
}

bool addInterface(const QString& name) {
    const bool added = run(QStringLiteral("ip link add %1 type veth peer name %1-far").arg(name)) &&
                       run(QStringLiteral("ip link set %1-far up").arg(name)) &&
                       run(QStringLiteral("ip link set %1 up").arg(name)) &&
                       run(QStringLiteral("ip addr add fe80::7100/64 dev %1 nodad").arg(name));
    const QDeadlineTimer deadline(patience);
    while (added && !deadline.hasExpired()) {
        if (isReady(name))
            return true;
        QThread::msleep(5);
    }
    return false;
}

/// Leaves the computer's network for an empty one, which vanishes with this process. Without the
/// right to, false.
bool enterPrivateNetwork() {
    if (unshare(CLONE_NEWNET) == 0)
        return true;
    const uid_t user = getuid();
    if (unshare(CLONE_NEWUSER | CLONE_NEWNET) != 0)
        return false;
    QFile map(QStringLiteral("/proc/self/uid_map"));
    return map.open(QIODevice::WriteOnly) &&
           map.write(QByteArray("0 ") + QByteArray::number(user) + " 1") > 0;
}

/// The network to test in. Must be made before there are threads, for it enters another network and
/// starts programs.
Network makeNetwork() {
    if (enterPrivateNetwork() && run(QStringLiteral("ip link set lo up")) &&
        addInterface(QStringLiteral("gx-one")) && addInterface(QStringLiteral("gx-two"))) {
        const QString address = QStringLiteral("fe80::7100");
        return {QStringLiteral("gx-one"), QStringLiteral("gx-two"), address, address, true};
    }
    std::puts("No private network could be made: scopes are tried on the loopback interface, where "
              "they must do no harm.");
    return {QStringLiteral("lo"), QStringLiteral("lo"), QStringLiteral("::1"),
            QStringLiteral("127.0.0.1"), false};
}

} // namespace

/// Link-local addresses, which mean nothing without the interface that they are on.
class TestLinkLocal : public QObject {
    Q_OBJECT

public:
    explicit TestLinkLocal(Network network) : m_network(std::move(network)) {}

private:
    static int indexOf(const QString& name) {
        return QNetworkInterface::interfaceFromName(name).index();
    }

    Network m_network;

private slots:
    void theIndexChoosesTheInterface_data() {
        QTest::addColumn<bool>("useSecond");
        QTest::newRow("first") << false;
        QTest::newRow("second") << true;
    }
    void theIndexChoosesTheInterface() {
        QFETCH(const bool, useSecond);
        const QString& name = useSecond ? m_network.second : m_network.first;
        const QString& bare = useSecond ? m_network.secondAddress : m_network.firstAddress;
        QHostAddress address(bare);
        if (m_network.isPrivate)
            address.setScopeId(name);
        Instrument instrument(address);
        Subject subject;
        Operator person;
        subject.link->Connect(bare.toStdString(), indexOf(name), instrument.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"connected"}, patience);
        QCOMPARE(instrument.line().localAddress(), address);
        subject.link->Send("hello");
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().peek(1000), QByteArray("hello"), patience);
    }

    void proxiesAreForTheWeb() {
        const RefusingPort proxy;
        QHostAddress address(m_network.firstAddress);
        if (m_network.isPrivate)
            address.setScopeId(m_network.first);
        Instrument instrument(address);
        Subject subject;
        Operator person;
        QNetworkProxy::setApplicationProxy(QNetworkProxy(
            QNetworkProxy::Socks5Proxy, QStringLiteral("127.0.0.1"), quint16(proxy.port())));
        subject.link->Connect(m_network.firstAddress.toStdString(), indexOf(m_network.first),
                              instrument.port());
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"connected"}, patience);
    }

    /// Nobody listens on the other interface, though the address and the port are the same.
    void theWrongIndexLeadsElsewhere() {
        QHostAddress address(m_network.firstAddress);
        if (m_network.isPrivate)
            address.setScopeId(m_network.first);
        Instrument instrument(address);
        Subject subject;
        Operator person;
        subject.link->Connect(m_network.secondAddress.toStdString(), indexOf(m_network.second),
                              instrument.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(person.boxes.size(), std::size_t(1));
        settle();
        QCOMPARE(instrument.accepted(), std::size_t(0));
    }

    /// An index that names no interface is left out, of the text as well.
    void withoutAnInterface() {
        Subject subject;
        Operator person;
        const int notAnInterface = 999'999;
        const std::string nowhere = m_network.isPrivate ? "10.1.2.3" : "127.255.255.255";
        subject.link->Connect(nowhere, notAnInterface, 7100);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(person.boxes.size(), std::size_t(1));
        QCOMPARE(person.boxes[0].text,
                 QStringLiteral("Network error while trying to connect to:%1:7100")
                     .arg(QString::fromStdString(nowhere)));
    }

    /// The text names the interface by its index.
    void theScopeIsTold() {
        Subject subject;
        Operator person;
        const QString nowhere = m_network.isPrivate ? "2001:db8::1" : "127.255.255.255";
        const int index = indexOf(m_network.second);
        subject.link->Connect(nowhere.toStdString(), index, 7100);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(person.boxes[0].text,
                 QStringLiteral("Network error while trying to connect to:%1%%2:7100")
                     .arg(nowhere)
                     .arg(index));
    }
};

int main(int argc, char** argv) {
    const Network network = makeNetwork();
    const TestEnvironment environment;
    const QApplication application(argc, argv);
    TestLinkLocal test(network);
    return QTest::qExec(&test, argc, argv);
}

#include "test_linklocal.moc"
