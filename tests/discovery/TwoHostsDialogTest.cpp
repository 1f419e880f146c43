#include "BoxRows.h"
#include "HostProgram.h"
#include "Instrument.h"
#include "Operator.h"
#include "Reference.h"
#include "TestEnvironment.h"

#include <QElapsedTimer>
#include <QNetworkInterface>
#include <QRadioButton>
#include <QScopeGuard>
#include <iostream>
#include <sstream>

namespace {

/// Generous: discovery needs a second or two, on a machine that is busy some more.
constexpr int limit = 60000;

/// Well below what a program waits for a service that does not answer: 25 seconds a question.
constexpr int longestOpening = 15000;

bool hasIPv4Instrument() {
    return !qEnvironmentVariableIsSet("GX_IPV6_ONLY");
}

/// This host's own address on the cable.
QHostAddress ownAddress() {
    const auto wanted =
        hasIPv4Instrument() ? QAbstractSocket::IPv4Protocol : QAbstractSocket::IPv6Protocol;
    for (const QNetworkAddressEntry& entry :
         QNetworkInterface::interfaceFromName("gx0").addressEntries()) {
        if (entry.ip().protocol() == wanted)
            return entry.ip();
    }
    return {};
}

/// The names on a list, without the row to type into.
QStringList instrumentsOf(const BonjourBox& box) {
    QStringList names = textsOf(box);
    names.resize(names.size() - 2);
    return names;
}

/// An instrument's address as an operator types it: with the cable where it is not unique.
QString addressOf(const BonjourBox& box, int row) {
    const QString address = box.itemData(row, Qt::UserRole + 1).toString();
    return QHostAddress(address).isLinkLocal() ? address + "%gx0" : address;
}

/// What an instrument that was started by announceQuietly shows.
InstrumentScreen quietScreen() {
    InstrumentSettings settings;
    settings.name = "Unit 7";
    settings.seed = 7100;
    settings.page = PageId::Text;
    return Instrument(settings).screen();
}

/// An instrument whose screen changes only when a key arrives.
void announceQuietly(HostProgram& host, const QString& name) {
    host.announce({name}, {"--name", "Unit 7", "--seed", "7100", "--page", "text", "--rate", "0"});
}

/// The operator waits until the dialog offers the instrument `name`, which nobody has chosen for
/// him, and takes it.
std::function<void(NewConnection&)> acceptOnce(const QString& name) {
    return [name](NewConnection& dialog) {
        QVERIFY(dialog.findChild<QRadioButton*>("etherButton")->isChecked());
        const auto* box = dialog.findChild<BonjourBox*>("etherList");
        QTRY_COMPARE_WITH_TIMEOUT(box->currentIndex(), box->findText(name), limit);
        dialog.accept();
    };
}

} // namespace

/// The whole road: an instrument announced on the other host is listed in the window's own dialog,
/// connected to, and mirrored.
class TwoHostsDialogTest : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init() { HostProgram::awaitQuiet(); }
    void anInstrumentIsListedConnectedAndMirrored();
    void aLostInstrumentIsRemadeByName();
    void theOpenDialogFollowsTheNetwork();
    void aTypedAddressConnectsWithoutDiscovery();
};

void TwoHostsDialogTest::initTestCase() {
    QVERIFY2(HostProgram::isOnOneOfTwo(), "run this with tools/two-hosts.sh");
    Q_INIT_RESOURCE(group);
}

void TwoHostsDialogTest::anInstrumentIsListedConnectedAndMirrored() {
    HostProgram host;
    announceQuietly(host, "unit3");
    Operator person;
    const ModalDialog<NewConnection> dialog(acceptOnce("unit3"));
    person.pressConnect(0);
    QVERIFY(dialog.answered());

    // By IPv4 where there is IPv4, otherwise by the address of this one cable.
    const QString peer = host.readLine("Connected: instrument 1, from ");
    QVERIFY2(peer.contains(ownAddress().toString()), qPrintable(peer));
    QCOMPARE(ownAddress().isLinkLocal(), !hasIPv4Instrument());
    QTRY_VERIFY_WITH_TIMEOUT(person.tile(0).IsConnected(), limit);
    QCOMPARE(person.tile(0).findChild<QLabel*>("nameLabel")->text(), QStringLiteral("unit3"));
    Reference reference(quietScreen(), person.display(0).size());
    QTRY_COMPARE_WITH_TIMEOUT(person.display(0).grab().toImage(), reference.image(), limit);
}

void TwoHostsDialogTest::aLostInstrumentIsRemadeByName() {
    Operator person;
    {
        HostProgram other;
        other.announce({"another"}, {"--port", "7101"});
        HostProgram host;
        announceQuietly(host, "unit3");
        const ModalDialog<NewConnection> dialog([](NewConnection& shown) {
            auto* box = shown.findChild<BonjourBox*>("etherList");
            QTRY_VERIFY_WITH_TIMEOUT(box->findText("unit3") >= 0, limit);
            QTRY_VERIFY_WITH_TIMEOUT(box->findText("another") >= 0, limit);
            box->setCurrentIndex(box->findText("unit3"));
            shown.accept();
        });
        person.pressConnect(0);
        QTRY_VERIFY_WITH_TIMEOUT(person.tile(0).IsConnected(), limit);
        host.readLine("Connected: instrument 1, from ");
        person.pressConnect(0);
        QTRY_VERIFY_WITH_TIMEOUT(!person.tile(0).IsConnected(), limit);
    }

    // Both come back, the other one first; the one that the tile had is the one that is offered.
    HostProgram other;
    other.announce({"another"}, {"--port", "7101"});
    HostProgram host;
    const ModalDialog<NewConnection> dialog([&host](NewConnection& shown) {
        QCOMPARE(shown.windowTitle(), QStringLiteral("Remake Connection"));
        const auto* box = shown.findChild<BonjourBox*>("etherList");
        QTRY_VERIFY_WITH_TIMEOUT(box->findText("another") >= 0, limit);
        announceQuietly(host, "unit3");
        QTRY_VERIFY_WITH_TIMEOUT(box->findText("unit3") >= 0, limit);
        acceptOnce("unit3")(shown);
    });
    person.pressConnect(0);
    host.readLine("Connected: instrument 1, from ");
}

void TwoHostsDialogTest::theOpenDialogFollowsTheNetwork() {
    QStringList many;
    for (int i = 10; i < 50; ++i)
        many += QStringLiteral("unit%1").arg(i);
    Operator person;
    const ModalDialog<NewConnection> dialog([&many](NewConnection& shown) {
        const auto* box = shown.findChild<BonjourBox*>("etherList");
        for (int round = 0; round < 2; ++round) {
            HostProgram host;
            host.announce({"unit3"});
            QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(*box), QStringList{"unit3"}, limit);
            host.stop();
            QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(*box), QStringList(), limit);
        }
        HostProgram host;
        host.announce(many);
        QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(*box), many, limit);
        for (int row = 0; row < many.size(); ++row)
            QVERIFY(!box->itemData(row, Qt::UserRole + 1).toString().isEmpty());
    });
    person.pressConnect(0);
    QVERIFY(dialog.answered());
}

void TwoHostsDialogTest::aTypedAddressConnectsWithoutDiscovery() {
    HostProgram host;
    announceQuietly(host, "unit3");
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    const auto restored = qScopeGuard([before] { std::cout.rdbuf(before); });
    QString address;
    Operator person;
    {
        // The service stops while the dialog is open: it says so and takes an address.
        const ModalDialog<NewConnection> dialog([&](NewConnection& shown) {
            auto* box = shown.findChild<BonjourBox*>("etherList");
            QTRY_COMPARE_WITH_TIMEOUT(instrumentsOf(*box), QStringList{"unit3"}, limit);
            address = addressOf(*box, 0);
            QCOMPARE(QProcess::execute("avahi-daemon", {"--kill"}), 0);
            const auto isTold = [&output] {
                return output.str().find("ERROR: Error browsing: Unknown Error\n") !=
                       std::string::npos;
            };
            QTRY_VERIFY2_WITH_TIMEOUT(isTold(), output.str().c_str(), limit);
            box->setCurrentIndex(box->count() - 1);
            box->setEditText(address);
            shown.accept();
        });
        person.pressConnect(0);
    }
    host.readLine("Connected: instrument 1, from ");
    Reference reference(quietScreen(), person.display(0).size());
    QTRY_COMPARE_WITH_TIMEOUT(person.display(0).grab().toImage(), reference.image(), limit);
    person.pressConnect(0);
    QTRY_VERIFY_WITH_TIMEOUT(!person.tile(0).IsConnected(), limit);

    // A dialog that opens now opens at once, says so as well and offers the address again.
    output.str({});
    QElapsedTimer clock;
    clock.start();
    const ModalDialog<NewConnection> dialog([&](NewConnection& shown) {
        QVERIFY(clock.elapsed() < longestOpening);
        QCOMPARE(instrumentsOf(*shown.findChild<BonjourBox*>("etherList")), QStringList());
        QCOMPARE(shown.findChild<BonjourBox*>("etherList")->currentText(), address);
        shown.accept();
    });
    person.pressConnect(0);
    QCOMPARE(QString::fromStdString(output.str()),
             QStringLiteral("ERROR: Unable to browse for service: _gx7100._tcp: Unknown Error\n"));
    host.readLine("Connected: instrument 2, from ");
}

int main(int argc, char** argv) {
    return runTest<TwoHostsDialogTest>(argc, argv);
}

#include "TwoHostsDialogTest.moc"
