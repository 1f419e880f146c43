#include "BoxRows.h"
#include "HostProgram.h"
#include "RecordingListener.h"
#include "TestEnvironment.h"

#include <QElapsedTimer>
#include <QProcess>
#include <QRegularExpression>
#include <QScopeGuard>
#include <iostream>
#include <net/if.h>
#include <sstream>

namespace {

/// Generous: discovery needs a second or two, on a machine that is busy some more.
constexpr int limit = 60000;

QStringList instrumentsOf(const BonjourBox& box) {
    QStringList texts = textsOf(box);
    texts.resize(texts.size() - 2);
    return texts;
}

} // namespace

/// The real thing: this host's discovery daemon, another host's instruments.
class TwoHostsTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { HostProgram::awaitQuiet(); }
    void anInstrumentAppears();
    void anInstrumentGoesAndComesBack();
    void namesAreListedAsAnnounced();
    void fortyInstrumentsAtOnce();
    void aNameThatIsTaken();
    void confirmingIsNotSupportedHere();
    void aBoxIsClosedInTheMiddleOfIt();
    void aDaemonThatStops();
};

void TwoHostsTest::initTestCase() {
    QVERIFY2(HostProgram::isOnOneOfTwo(), "run this with tools/two-hosts.sh");
}

void TwoHostsTest::anInstrumentAppears() {
    HostProgram host;
    host.announce({"unit3"});
    BonjourBox box;
    box.start("_gx7100._tcp", "local.");
    QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(box), QStringList{"unit3"}, limit);

    // Both addresses come, each in its own time.
    QTRY_VERIFY_WITH_TIMEOUT(box._GetSelectedInstInfo()->addresses.size() >= 2, limit);
    const BonjourBox::InstInfo info = *box._GetSelectedInstInfo();
    QCOMPARE(info.kind, std::string("gx7100"));
    QCOMPARE(info.host, std::string("instrument.local."));
    QCOMPARE(info.txt, (std::map<std::string, std::string>{{"model", "GX-7100"}}));
    int scope = -1;
    int port = 0;
    QCOMPARE(info.SelectIPAddress(false, &scope, &port), std::string("10.71.0.2"));
    QCOMPARE(scope, 0);
    const std::string ipv6 = info.SelectIPAddress(true, &scope, &port);
    QVERIFY(SocketAddress(ipv6).IsLinkLocal());
    QCOMPARE(scope, static_cast<int>(::if_nametoindex("gx0")));
    QCOMPARE(askedFor(box).section(' ', 0, 1), QStringLiteral("10.71.0.2 0"));
}

void TwoHostsTest::anInstrumentGoesAndComesBack() {
    BonjourBox box;
    box.start("_gx7100._tcp", "local.");
    HostProgram stays;
    stays.announce({"unit1"}, {"--port", "7101"});
    for (int round = 0; round < 2; ++round) {
        HostProgram host;
        host.announce({"unit2"});
        QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(box), (QStringList{"unit1", "unit2"}), limit);
        host.stop();
        QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(box), QStringList{"unit1"}, limit);
    }
}

void TwoHostsTest::namesAreListedAsAnnounced() {
    const QStringList names{"A. dot\\backslash", "<b>bold</b> & \"more\"", "Messgerät 7",
                            QString::fromUtf8(QByteArray("\xE6\xB8\xAC").repeated(21)), "x"};
    BonjourBox box;
    box.start("_gx7100._tcp", "local.");
    HostProgram host;
    host.announce(names);
    const auto sorted = [](QStringList list) {
        list.sort();
        return list;
    };
    QTRY_COMPARE_WITH_TIMEOUT(sorted(instrumentsOf(box)), sorted(names), limit);
}

void TwoHostsTest::fortyInstrumentsAtOnce() {
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    QStringList names;
    for (int i = 10; i < 50; ++i)
        names += QStringLiteral("unit%1").arg(i);
    HostProgram host;
    host.announce(names);
    BonjourBox box;
    box.start("_gx7100._tcp", "local.");
    QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(box), names, limit);
    for (int row = 0; row < names.size(); ++row)
        QTRY_COMPARE_WITH_TIMEOUT(box.itemData(row, Qt::UserRole + 1).toString(),
                                  QStringLiteral("10.71.0.2"), limit);

    host.stop();
    QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(box), QStringList(), limit);
    HostProgram again;
    again.announce(names);
    QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(box), names, limit);
    std::cout.rdbuf(before);
    // A resolve that the instruments' going overtook may have failed; none may have had no slot.
    QVERIFY2(output.str().find("Out of resources") == std::string::npos, output.str().c_str());
}

void TwoHostsTest::aNameThatIsTaken() {
    HostProgram first;
    first.announce({"unit1"});
    HostProgram sameHost;
    sameHost.start(QStringLiteral(GX_SIMULATOR), {"--port", "7101", "--announce", "unit1"},
                   {"gx7100sim: Unable to register service: unit1: Name Conflict"});
    // Between hosts the daemons settle it: the later one is called something else.
    HostProgram otherHost(HostProgram::Host::Own);
    otherHost.start(QStringLiteral(GX_SIMULATOR), {"--announce", "unit1"}, {"Announced: unit1 #2"});
    BonjourBox box;
    box.start("_gx7100._tcp", "local.");
    QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(box), (QStringList{"unit1", "unit1 #2"}), limit);
}

void TwoHostsTest::confirmingIsNotSupportedHere() {
    RecordingListener listener;
    BonjourClient client(&listener);
    client.Confirm("instrument.local.", "10.71.0.2");
    QCOMPARE(listener.take(),
             QStringList{"error Unable to confirm: instrument.local.: Unsupported"});
}

void TwoHostsTest::aBoxIsClosedInTheMiddleOfIt() {
    QStringList names;
    for (int i = 10; i < 30; ++i)
        names += QStringLiteral("unit%1").arg(i);
    HostProgram host;
    host.announce(names);
    // Resolves and queries are under way whenever another row has come.
    for (int rows = 0; rows < 6; ++rows) {
        BonjourBox box;
        box.start("_gx7100._tcp", "local.");
        QTRY_VERIFY_WITH_TIMEOUT(instrumentsOf(box).size() >= rows, limit);
    }
}

void TwoHostsTest::aDaemonThatStops() {
    // Its host has no address, and asking for one does not end.
    HostProgram nowhere;
    nowhere.start("avahi-publish", {"-s", "-H", "nowhere.local", "unit0", "_gx7100._tcp", "7100"},
                  {"Established under name 'unit0'"});
    HostProgram host;
    host.announce({"unit3"});
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    const auto restored = qScopeGuard([before] { std::cout.rdbuf(before); });
    BonjourBox open;
    open.start("_gx7100._tcp", "local.");
    QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(open), QStringList{"unit3"}, limit);
    QCOMPARE(QString::fromStdString(output.str()), QString());
    QCOMPARE(QProcess::execute("avahi-daemon", {"--kill"}), 0);
    // Both the search and what was being asked at that moment.
    for (const char* step : {"brows", "(resolv|query)"}) {
        const QRegularExpression told(
            QStringLiteral("ERROR: Error %1ing: Unknown Error\n").arg(step));
        QTRY_VERIFY2_WITH_TIMEOUT(told.match(QString::fromStdString(output.str())).hasMatch(),
                                  output.str().c_str(), limit);
    }
    QCOMPARE(instrumentsOf(open), QStringList{"unit3"});

    // A box that opens now says so, at once, and takes an address all the same.
    output.str({});
    QElapsedTimer clock;
    clock.start();
    BonjourBox box;
    box.start("_gx7100._tcp", "local.");
    QVERIFY(clock.elapsed() < 5000); // not after having waited for anybody
    QCOMPARE(QString::fromStdString(output.str()),
             QStringLiteral("ERROR: Unable to browse for service: _gx7100._tcp: Unknown Error\n"));
    for (BonjourBox* each : {&open, &box}) {
        each->setCurrentIndex(each->count() - 1);
        each->setEditText("10.71.0.2");
        QCOMPARE(askedFor(*each), QStringLiteral("10.71.0.2 0 7100"));
    }
}

int main(int argc, char** argv) {
    return runTest<TwoHostsTest>(argc, argv);
}

#include "TwoHostsTest.moc"
