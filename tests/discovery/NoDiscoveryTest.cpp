#include "BonjourBox.h"
#include "Operator.h"
#include "RawInstrument.h"
#include "TestEnvironment.h"

#include <QElapsedTimer>
#include <iostream>
#include <sstream>

namespace {

constexpr int patience = 20000;

/// Well below what a program waits for a service that does not answer: 25 seconds a question.
constexpr int longestOpening = 15000;

} // namespace

/// On a computer without any discovery service, with the system's library all the same.
class NoDiscoveryTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void aTypedAddressConnects();
};

void NoDiscoveryTest::aTypedAddressConnects() {
    RawInstrument instrument;
    Operator person;
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    QElapsedTimer clock;
    clock.start();
    const ModalDialog<NewConnection> dialog([&](NewConnection& shown) {
        QVERIFY(clock.elapsed() < longestOpening);
        auto* box = shown.findChild<BonjourBox*>("etherList");
        QCOMPARE(box->count(), 2);
        box->lineEdit()->selectAll();
        QTest::keyClicks(box->lineEdit(), instrument.address());
        shown.accept();
    });
    person.pressConnect(0);
    std::cout.rdbuf(before);
    QVERIFY(dialog.answered());
    QCOMPARE(QString::fromStdString(output.str()),
             QStringLiteral("ERROR: Unable to browse for service: _gx7100._tcp: Unknown Error\n"));
    QTRY_VERIFY_WITH_TIMEOUT(instrument.isConnected(), patience);
    QTRY_VERIFY_WITH_TIMEOUT(person.tile(0).IsConnected(), patience);
}

int main(int argc, char** argv) {
    // Before the library asks for it for the first time.
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/bus");
    return runTest<NoDiscoveryTest>(argc, argv);
}

#include "NoDiscoveryTest.moc"
