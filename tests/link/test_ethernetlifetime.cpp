#include "LinkFixture.h"
#include "TestEnvironment.h"

#include <QEventLoop>
#include <QWidget>

#include <string>
#include <utility>

using namespace std::string_literals;

namespace {

const QByteArray threeFrames = QByteArray::fromStdString("<D>\0\0\0\1a<D>\0\0\0\1b<D>\0\0\0\1c"s);

/// One of the ways in which a link comes to announce disconnected().
class Cause {
public:
    Cause(const QString& name, Subject& subject) : m_name(name), m_subject(subject) {}

    void bringAbout() {
        ConnectGX7100Ethernet& link = *m_subject.link;
        if (m_name == "closed" || m_name == "disconnected") {
            m_subject.connectTo(m_instrument);
            m_subject.journal.entries.clear();
        }
        if (m_name == "refused")
            link.Connect("127.0.0.1", 0, m_refusing.port());
        else if (m_name == "closed")
            m_instrument.line().disconnectFromHost();
        else
            link.Disconnect();
    }

private:
    QString m_name;
    Subject& m_subject;
    Instrument m_instrument;
    RefusingPort m_refusing;
};

} // namespace

/// The slots of a link's signals, and whoever acts while its box is open, may do anything to it.
class TestEthernetLifetime : public QObject {
    Q_OBJECT

private slots:
    void deletedInASlotOfConnected() {
        Instrument instrument;
        Subject subject;
        connect(subject.link.get(), &ConnectGX7100::connected, this, [&] { subject.link.reset(); });
        subject.link->Connect("127.0.0.1", 0, instrument.port());
        QTRY_VERIFY_WITH_TIMEOUT(!subject.link, patience);
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().state(), QAbstractSocket::UnconnectedState,
                                  patience);
        QCOMPARE(subject.told(), QStringList{"connected"});
    }

    void deletedInASlotOfSignalFrom() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        connect(subject.link.get(), &ConnectGX7100::signalFrom, this,
                [&] { subject.link.reset(); });
        instrument.line().write(threeFrames);
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().state(), QAbstractSocket::UnconnectedState,
                                  patience);
        QCOMPARE(subject.told(), (QStringList{"connected", "a"}));
    }

    /// The socket's own code is still on the stack while the inner event loop runs.
    void deletedInAnEventLoopInsideASlot() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        QPointer<QTcpSocket> socket = subject.link->findChild<QTcpSocket*>();
        bool outlivedTheLink = false;
        connect(subject.link.get(), &ConnectGX7100::signalFrom, this, [&] {
            QMetaObject::invokeMethod(
                this, [&] { subject.link.reset(); }, Qt::QueuedConnection);
            settle();
            outlivedTheLink = !subject.link && socket;
        });
        instrument.line().write(threeFrames);
        QTRY_COMPARE_WITH_TIMEOUT(instrument.line().state(), QAbstractSocket::UnconnectedState,
                                  patience);
        QCOMPARE(subject.told(), (QStringList{"connected", "a"}));
        QVERIFY(outlivedTheLink);
        QTRY_VERIFY_WITH_TIMEOUT(!socket, patience);
    }

    void deletedInASlotOfDisconnected_data() {
        QTest::addColumn<bool>("instrumentCloses");
        QTest::newRow("the instrument closes") << true;
        QTest::newRow("Disconnect()") << false;
    }
    void deletedInASlotOfDisconnected() {
        QFETCH(const bool, instrumentCloses);
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        connect(subject.link.get(), &ConnectGX7100::disconnected, this,
                [&] { subject.link.reset(); });
        if (instrumentCloses)
            instrument.line().disconnectFromHost();
        else
            subject.link->Disconnect();
        QTRY_VERIFY_WITH_TIMEOUT(!subject.link, patience);
        settle();
        QCOMPARE(subject.told(), (QStringList{"connected", "disconnected"}));
    }

    void deletedWhenNothingIsGoingOn() {
        QPointer<QTcpSocket> socket;
        {
            const Subject subject;
            socket = subject.link->findChild<QTcpSocket*>();
        }
        QVERIFY(!socket);
    }

    void deletedWhileConnecting() {
        const SilentPort silent;
        Subject subject;
        subject.link->Connect("127.0.0.1", 0, silent.port());
        subject.link.reset();
        settle();
        QVERIFY(subject.told().isEmpty());
    }

    void disconnectInASlotOfSignalFrom() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        connect(subject.link.get(), &ConnectGX7100::signalFrom, this,
                [&] { subject.link->Disconnect(); });
        instrument.line().write(threeFrames);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"connected", "a", "disconnected"}),
                                  patience);
        settle();
        QCOMPARE(subject.told(), (QStringList{"connected", "a", "disconnected"}));
    }

    /// What comes while a slot runs an event loop is not left lying until more comes.
    void packetsDuringAnEventLoopInsideASlot() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        bool first = true;
        connect(subject.link.get(), &ConnectGX7100::signalFrom, this, [&] {
            if (!std::exchange(first, false))
                return;
            instrument.line().write(threeFrames);
            settle();
        });
        instrument.line().write(threeFrames);
        QTRY_COMPARE_WITH_TIMEOUT(
            subject.told(), (QStringList{"connected", "a", "b", "c", "a", "b", "c"}), patience);
    }

    void disconnectInASlotOfDisconnected_data() {
        QTest::addColumn<QString>("name");
        for (const char* const name : {"never connected", "closed", "disconnected", "refused"})
            QTest::newRow(name) << QString::fromLatin1(name);
    }
    void disconnectInASlotOfDisconnected() {
        QFETCH(const QString, name);
        Subject subject;
        Cause cause(name, subject);
        Operator person;
        connect(subject.link.get(), &ConnectGX7100::disconnected, this,
                [&] { subject.link->Disconnect(); });
        cause.bringAbout();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);
        settle();
        QCOMPARE(subject.told(), QStringList{"disconnected"});
    }

    void connectInASlotOfDisconnected_data() { disconnectInASlotOfDisconnected_data(); }
    void connectInASlotOfDisconnected() {
        QFETCH(const QString, name);
        Instrument second;
        Subject subject;
        Cause cause(name, subject);
        Operator person;
        connect(subject.link.get(), &ConnectGX7100::disconnected, this,
                [&] { subject.link->Connect("127.0.0.1", 0, second.port()); });
        cause.bringAbout();
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"disconnected", "connected"}),
                                  patience);
        subject.link->Send("out");
        second.line().write(QByteArray::fromStdString("<D>\0\0\0\2in"s));
        QTRY_COMPARE_WITH_TIMEOUT(second.line().peek(1000), QByteArray("out"), patience);
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"disconnected", "connected", "in"}),
                                  patience);
    }

    /// The attempt that such a slot makes has an end of its own.
    void connectAndDisconnectInASlotOfDisconnected() {
        const SilentPort silent;
        Subject subject;
        bool first = true;
        connect(subject.link.get(), &ConnectGX7100::disconnected, this, [&] {
            if (!std::exchange(first, false))
                return;
            subject.link->Connect("127.0.0.1", 0, silent.port());
            subject.link->Disconnect();
        });
        subject.link->Disconnect();
        QCOMPARE(subject.told(), (QStringList{"disconnected", "disconnected"}));
        QVERIFY(!subject.link->IsOpen());
    }

    void deletedWhileTheBoxIsOpen() {
        const RefusingPort port;
        Subject subject;
        QPointer<QMessageBox> open;
        Operator person({[&](QMessageBox& box) {
            open = &box;
            subject.link.reset();
        }});
        subject.link->Connect("127.0.0.1", 0, port.port());
        QTRY_VERIFY_WITH_TIMEOUT(!subject.link, patience);
        // The box is about a link that is no more.
        QTRY_VERIFY_WITH_TIMEOUT(!open, patience);
        settle();
        QVERIFY(subject.told().isEmpty());
    }

    void theWindowGoesWhileTheBoxIsOpen() {
        const RefusingPort port;
        auto* const window = new QWidget;
        Subject subject(window);
        Operator person({[&](QMessageBox&) { delete window; }});
        subject.link->Connect("127.0.0.1", 0, port.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), QStringList{"disconnected"}, patience);

        // Later boxes have no parent.
        subject.link->Connect("127.0.0.1", 0, port.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"disconnected", "disconnected"}),
                                  patience);
        QCOMPARE(person.boxes.size(), std::size_t(2));
        QVERIFY(!person.boxes[1].parent);
    }

    void disconnectWhileTheBoxIsOpen() {
        const RefusingPort port;
        Subject subject;
        QStringList toldBeforeOk;
        Operator person({[&](QMessageBox& box) {
            subject.link->Disconnect();
            toldBeforeOk = subject.told();
            Operator::pressOk(box);
        }});
        subject.link->Connect("127.0.0.1", 0, port.port());
        QTRY_COMPARE_WITH_TIMEOUT(toldBeforeOk, QStringList{"disconnected"}, patience);
        settle();
        QCOMPARE(subject.told(), QStringList{"disconnected"});
    }

    /// The failure that is being told comes to its end first.
    void connectWhileTheBoxIsOpen_data() {
        QTest::addColumn<bool>("disconnectFirst");
        QTest::newRow("Connect()") << false;
        QTest::newRow("Disconnect(), Connect()") << true;
    }
    void connectWhileTheBoxIsOpen() {
        QFETCH(const bool, disconnectFirst);
        const RefusingPort port;
        Instrument instrument;
        Subject subject;
        Operator person({[&](QMessageBox& box) {
            if (disconnectFirst)
                subject.link->Disconnect();
            subject.link->Connect("127.0.0.1", 0, instrument.port());
            settle();
            Operator::pressOk(box);
        }});
        person.journal = &subject.journal;
        subject.link->Connect("127.0.0.1", 0, port.port());
        QTRY_COMPARE_WITH_TIMEOUT(subject.told(), (QStringList{"box", "disconnected", "connected"}),
                                  patience);
        settle();
        QCOMPARE(subject.told(), (QStringList{"box", "disconnected", "connected"}));
    }

    void packetsWhileTheBoxIsOpen() {
        Instrument instrument;
        Subject subject;
        subject.connectTo(instrument);
        Operator person({[&](QMessageBox& box) {
            instrument.line().write(threeFrames);
            settle();
            Operator::pressOk(box);
        }});
        person.journal = &subject.journal;
        subject.link->OnSocketError(QAbstractSocket::SslInternalError);
        QCOMPARE(subject.told(), (QStringList{"connected", "box", "a", "b", "c", "disconnected"}));
    }

    /// Two instruments are off; the operator sees a box for each.
    void twoBoxesAtOnce() {
        const RefusingPort port;
        Subject first;
        Subject second;
        const auto waitForBoth = [](QMessageBox& box) {
            settle();
            Operator::pressOk(box);
        };
        Operator person({waitForBoth, Operator::pressOk});
        first.link->Connect("127.0.0.1", 0, port.port());
        second.link->Connect("127.0.0.1", 0, port.port());
        QTRY_COMPARE_WITH_TIMEOUT(first.told(), QStringList{"disconnected"}, patience);
        QTRY_COMPARE_WITH_TIMEOUT(second.told(), QStringList{"disconnected"}, patience);
        QCOMPARE(person.boxes.size(), std::size_t(2));
    }
};

int main(int argc, char** argv) {
    return runTest<TestEthernetLifetime>(argc, argv);
}

#include "test_ethernetlifetime.moc"
