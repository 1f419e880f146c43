#include "BoxRows.h"
#include "FakeDnsSd.h"
#include "TestEnvironment.h"

#include <QLineEdit>
#include <iostream>
#include <sstream>

/// The list of instruments: its rows, what is asked of it, and when it is rebuilt.
class BonjourBoxTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_library = std::make_unique<FakeDnsSd>();
        m_box = std::make_unique<BonjourBox>();
    }
    void cleanup() {
        m_box.reset();
        QCOMPARE(m_library->running(), 0);
        QVERIFY(m_library->misuses().empty());
        m_library.reset();
    }

    void looksForNothingUntilStarted();
    void canBeMadeStarted();
    void start();
    void withoutInstruments();
    void oneRowAnInstrument();
    void sortedWithoutRegardToCase();
    void namesEqualButForCaseKeepTheirOrder();
    void anInstrumentIsOneRowWhateverItsAddresses_data();
    void anInstrumentIsOneRowWhateverItsAddresses();
    void theFirstReportCounts();
    void choosesAnAddress_data();
    void choosesAnAddress();
    void kinds_data();
    void kinds();
    void withdrawnInstruments();
    void removingAnUnlistedNameRebuilds();
    void theDefaultInstrument();
    void theDefaultIsTakenToTheLetter();
    void anEmptyDefaultDoesNotRebuild();
    void anUnlistedDefaultLeavesTheSelection();
    void theDefaultComesBackWithEveryRebuild();
    void aDisabledBoxIsRebuiltAtTheNextPress();
    void theHost();
    void theSelectedInstrument();
    void asksWithoutWantingScopeAndPort();
    void errorsGoToStandardOutput();
    void withoutDiscoveryATypedAddressWorks();
    void theEmptySlotsDoNothing();

private:
    std::unique_ptr<FakeDnsSd> m_library;
    std::unique_ptr<BonjourBox> m_box;
};

void BonjourBoxTest::looksForNothingUntilStarted() {
    QVERIFY(!m_box->isEditable());
    QCOMPARE(m_box->sizeAdjustPolicy(), QComboBox::AdjustToContents);
    QCOMPARE(m_box->count(), 0);
    QCOMPARE(m_library->nextCall(), std::string());
    QCOMPARE(askedFor(*m_box), QStringLiteral("false"));
    std::string host;
    QVERIFY(!m_box->getHost(host));
    QVERIFY(m_box->_GetSelectedInstInfo() == nullptr);
}

void BonjourBoxTest::canBeMadeStarted() {
    const BonjourBox box("_gx7100._tcp", "local.", nullptr);
    QVERIFY(!box.isEditable());
    QCOMPARE(m_library->nextCall(), std::string("browse 0 _gx7100._tcp (default)"));
}

void BonjourBoxTest::start() {
    m_box->start("_gx7100._tcp", "elsewhere.");
    // The domain is kept, not looked in.
    QCOMPARE(m_library->nextCall(), std::string("browse 0 _gx7100._tcp (default)"));
    QVERIFY(m_box->isEditable());
    QCOMPARE(m_box->maxVisibleItems(), 20);
    QCOMPARE(m_box->insertPolicy(), QComboBox::NoInsert);
}

void BonjourBoxTest::withoutInstruments() {
    m_box->start("_gx7100._tcp", "local.");
    QCOMPARE(rowsOf(*m_box), (QStringList{"---", "Other...|||0|7100"}));
    m_box->setEditText("192.168.1.9");
    QCOMPARE(askedFor(*m_box), QStringLiteral("192.168.1.9 0 7100"));
    // It stays, as the label of that row.
    QCOMPARE(textsOf(*m_box), (QStringList{"---", "192.168.1.9"}));
    found(*m_box, "unit1", "10.0.0.1");
    QCOMPARE(textsOf(*m_box), (QStringList{"unit1", "---", "192.168.1.9"}));
}

void BonjourBoxTest::oneRowAnInstrument() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit2", "fe80::2", 5);
    found(*m_box, "unit1", "10.0.0.1");
    QCOMPARE(rowsOf(*m_box),
             (QStringList{"unit1|unit1-host.local.|10.0.0.1|0|48155",
                          "unit2|unit2-host.local.|fe80::2|5|48155", "---", "Other...|||0|7100"}));
    for (int row = 0; row < m_box->count(); ++row)
        QVERIFY(m_box->itemIcon(row).isNull());
    QCOMPARE(m_box->currentIndex(), 0);
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.1 0 48155"));
    m_box->setCurrentIndex(1);
    QCOMPARE(askedFor(*m_box), QStringLiteral("fe80::2 5 48155"));
    // The line is no row to ask for.
    m_box->setCurrentIndex(2);
    QCOMPARE(askedFor(*m_box), QStringLiteral("false"));
}

void BonjourBoxTest::sortedWithoutRegardToCase() {
    m_box->start("_gx7100._tcp", "local.");
    for (const char* name : {"beta", "Alpha", "alpha2"})
        found(*m_box, name, "10.0.0.1");
    QCOMPARE(textsOf(*m_box), (QStringList{"Alpha", "alpha2", "beta", "---", "Other..."}));
}

void BonjourBoxTest::namesEqualButForCaseKeepTheirOrder() {
    m_box->start("_gx7100._tcp", "local.");
    for (const char* name : {"unit", "zero", "Unit", "UNIT", "alpha"})
        found(*m_box, name, "10.0.0.1");
    QCOMPARE(textsOf(*m_box),
             (QStringList{"alpha", "unit", "Unit", "UNIT", "zero", "---", "Other..."}));
}

void BonjourBoxTest::anInstrumentIsOneRowWhateverItsAddresses_data() {
    QTest::addColumn<QStringList>("addresses");
    QTest::addColumn<QString>("row");

    QTest::newRow("IPv6, then IPv4")
        << QStringList{"fe80::1", "10.0.0.1"} << "unit1|unit1-host.local.|10.0.0.1|0|48155";
    QTest::newRow("IPv4, then IPv6")
        << QStringList{"10.0.0.1", "fe80::1"} << "unit1|unit1-host.local.|10.0.0.1|0|48155";
    QTest::newRow("the same twice")
        << QStringList{"fe80::1", "fe80::1"} << "unit1|unit1-host.local.|fe80::1|3|48155";
    QTest::newRow("the lowest of several") << QStringList{"10.0.0.2", "9.0.0.9", "10.0.0.1"}
                                           << "unit1|unit1-host.local.|9.0.0.9|0|48155";
}

void BonjourBoxTest::anInstrumentIsOneRowWhateverItsAddresses() {
    QFETCH(QStringList, addresses);
    QFETCH(QString, row);
    m_box->start("_gx7100._tcp", "local.");
    for (const QString& address : addresses)
        found(*m_box, "unit1", address.toStdString(), 3);
    QCOMPARE(rowsOf(*m_box), (QStringList{row, "---", "Other...|||0|7100"}));
    QCOMPARE(m_box->_GetSelectedInstInfo()->addresses.size(),
             static_cast<std::size_t>(QSet<QString>(addresses.begin(), addresses.end()).size()));
}

void BonjourBoxTest::theFirstReportCounts() {
    m_box->start("_gx7100._tcp", "local.");
    const SocketAddress address(std::string("10.0.0.1"));
    m_box->AddService("unit1", "_gx7100._tcp", "local.", 3, "first.local.", address, {{"a", "1"}});
    m_box->AddService("unit1", "_else._tcp", "lan.", 4, "second.local.", address, {{"a", "2"}});
    const BonjourBox::InstInfo* const info = m_box->_GetSelectedInstInfo();
    QCOMPARE(info->host, std::string("first.local."));
    QCOMPARE(info->kind, std::string("gx7100"));
    QCOMPARE(info->txt.at("a"), std::string("1"));
    QCOMPARE(info->addresses.size(), 1U);
}

void BonjourBoxTest::choosesAnAddress_data() {
    QTest::addColumn<QStringList>("addresses"); // "address port scope"
    QTest::addColumn<bool>("preferIPv6");
    QTest::addColumn<QString>("chosen");

    const QStringList both{"fe80::2 80 4", "10.0.0.2 90 0", "fe80::1 80 3", "10.0.0.1 90 0"};
    const QStringList four{"10.0.0.2 80 0", "10.0.0.3 79 0"};
    const QStringList six{"fe80::2 80 4", "fe80::3 79 5"};
    QTest::newRow("both") << both << false << "10.0.0.1 90 0";
    QTest::newRow("both, IPv6 preferred") << both << true << "fe80::1 80 3";
    QTest::newRow("IPv4 only: the lowest port comes first") << four << false << "10.0.0.3 79 0";
    QTest::newRow("IPv4 only, IPv6 preferred") << four << true << "10.0.0.3 79 0";
    QTest::newRow("IPv6 only") << six << false << "fe80::3 79 5";
    QTest::newRow("IPv6 only, IPv6 preferred") << six << true << "fe80::3 79 5";
    QTest::newRow("none") << QStringList() << false << " 0 0";
    QTest::newRow("none, IPv6 preferred") << QStringList() << true << " 0 0";
}

void BonjourBoxTest::choosesAnAddress() {
    QFETCH(QStringList, addresses);
    QFETCH(bool, preferIPv6);
    QFETCH(QString, chosen);
    BonjourBox::InstInfo info("unit1", "host", SocketAddress(Socket::IPv4), "gx7100", {});
    info.addresses.clear();
    for (const QString& each : addresses) {
        SocketAddress address(each.section(' ', 0, 0).toStdString());
        address.Port(each.section(' ', 1, 1).toInt());
        address.Scope(each.section(' ', 2, 2).toUInt());
        info.addresses.insert(address);
    }
    int scope = -1;
    int port = -1;
    const std::string text = info.SelectIPAddress(preferIPv6, &scope, &port);
    QCOMPARE(QString("%1 %2 %3").arg(QString::fromStdString(text)).arg(port).arg(scope), chosen);
    QCOMPARE(info.SelectIPAddress(preferIPv6), text);
    QCOMPARE(info.SelectIPAddress(preferIPv6, nullptr, &port), text);
}

void BonjourBoxTest::kinds_data() {
    QTest::addColumn<QString>("regtype");
    QTest::addColumn<QString>("kind");

    QTest::newRow("the instruments") << "_gx7100._tcp"
                                     << "gx7100";
    QTest::newRow("others") << "_other._tcp"
                            << "other";
    QTest::newRow("both words") << "_other-gx7100._tcp"
                                << "gx7100";
    QTest::newRow("neither") << "_http._tcp"
                             << "unknown";
    QTest::newRow("upper case") << "_GX7100._tcp"
                                << "unknown";
    QTest::newRow("nothing") << ""
                             << "unknown";
}

void BonjourBoxTest::kinds() {
    QFETCH(QString, regtype);
    QFETCH(QString, kind);
    m_box->AddService("unit1", regtype.toStdString(), "local.", 3, "host", SocketAddress("1.2.3.4"),
                      {});
    QCOMPARE(QString::fromStdString(m_box->_GetSelectedInstInfo()->kind), kind);
}

void BonjourBoxTest::withdrawnInstruments() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit1", "fe80::1", 3);
    found(*m_box, "unit2", "10.0.0.2");
    withdrawn(*m_box, "unit1"); // with all its addresses
    QCOMPARE(textsOf(*m_box), (QStringList{"unit2", "---", "Other..."}));
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.2 0 48155"));
    withdrawn(*m_box, "UNIT2"); // a name is taken to the letter
    QCOMPARE(m_box->count(), 3);
    withdrawn(*m_box, "unit2");
    QCOMPARE(textsOf(*m_box), (QStringList{"---", "Other..."}));
    found(*m_box, "unit1", "10.0.0.3");
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.3 0 48155"));
}

void BonjourBoxTest::removingAnUnlistedNameRebuilds() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    m_box->setDefault("unit1");
    m_box->setCurrentIndex(1);
    withdrawn(*m_box, "unit3");
    QCOMPARE(m_box->currentText(), QStringLiteral("unit1"));
}

void BonjourBoxTest::theDefaultInstrument() {
    m_box->start("_gx7100._tcp", "local.");
    m_box->setDefault("unit2");
    found(*m_box, "unit1", "10.0.0.1");
    QCOMPARE(m_box->currentText(), QStringLiteral("unit1"));
    found(*m_box, "unit2", "10.0.0.2");
    QCOMPARE(m_box->currentText(), QStringLiteral("unit2"));
    m_box->setDefault("unit1");
    QCOMPARE(m_box->currentText(), QStringLiteral("unit1"));
    QCOMPARE(askedFor(*m_box), QStringLiteral("10.0.0.1 0 48155"));
}

void BonjourBoxTest::theDefaultIsTakenToTheLetter() {
    m_box->start("_gx7100._tcp", "local.");
    for (const char* name : {"unit", "Unit", "unit2"})
        found(*m_box, name, "10.0.0.1");
    m_box->setDefault("Unit");
    QCOMPARE(m_box->currentIndex(), 1);
    m_box->setDefault("Other...");
    QCOMPARE(m_box->currentIndex(), 4);
}

void BonjourBoxTest::anEmptyDefaultDoesNotRebuild() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit1", "10.0.0.1");
    m_box->setItemText(0, "marked");
    m_box->setDefault("");
    QCOMPARE(m_box->itemText(0), QStringLiteral("marked"));
    m_box->setDefault("unit1");
    QCOMPARE(m_box->itemText(0), QStringLiteral("unit1"));
}

void BonjourBoxTest::anUnlistedDefaultLeavesTheSelection() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    for (const int row : {1, 0, 3}) {
        m_box->setCurrentIndex(row);
        m_box->setDefault("unit3");
        QCOMPARE(m_box->currentIndex(), row);
    }
}

void BonjourBoxTest::theDefaultComesBackWithEveryRebuild() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    m_box->setDefault("unit2");
    m_box->setCurrentIndex(0);
    emit m_box->activated(0); // the operator's own choice
    found(*m_box, "unit3", "10.0.0.3");
    QCOMPARE(m_box->currentText(), QStringLiteral("unit2"));
}

void BonjourBoxTest::aDisabledBoxIsRebuiltAtTheNextPress() {
    m_box->start("_gx7100._tcp", "local.");
    m_box->resize(200, 30);
    m_box->setEnabled(false);
    found(*m_box, "unit1", "10.0.0.1");
    withdrawn(*m_box, "unit2");
    m_box->setDefault("unit1");
    QCOMPARE(textsOf(*m_box), (QStringList{"---", "Other..."}));
    QTest::mouseClick(m_box.get(), Qt::RightButton, {}, QPoint(195, 15));
    QCOMPARE(m_box->count(), 2);

    m_box->setEnabled(true);
    QCOMPARE(m_box->count(), 2);
    QTest::mousePress(m_box.get(), Qt::RightButton, {}, QPoint(195, 15));
    QCOMPARE(textsOf(*m_box), (QStringList{"unit1", "---", "Other..."}));

    // Once: nothing is pending any more.
    m_box->setItemText(0, "marked");
    QTest::mousePress(m_box.get(), Qt::RightButton, {}, QPoint(195, 15));
    QCOMPARE(m_box->itemText(0), QStringLiteral("marked"));
}

void BonjourBoxTest::theHost() {
    m_box->start("_gx7100._tcp", "local.");
    std::string host = "before";
    QVERIFY(!m_box->getHost(host));
    QCOMPARE(host, std::string());
    found(*m_box, "unit1", "10.0.0.1");
    QVERIFY(m_box->getHost(host));
    QCOMPARE(host, std::string("unit1-host.local."));
}

void BonjourBoxTest::theSelectedInstrument() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "Gerät 1", "10.0.0.1");
    found(*m_box, "unit2", "10.0.0.2");
    QCOMPARE(m_box->_GetSelectedInstInfo()->name, std::string("Gerät 1"));
    m_box->setEditText("unit2"); // the text counts, not the row
    QCOMPARE(m_box->_GetSelectedInstInfo()->name, std::string("unit2"));
    m_box->setEditText("UNIT2");
    QVERIFY(m_box->_GetSelectedInstInfo() == nullptr);
}

void BonjourBoxTest::asksWithoutWantingScopeAndPort() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit1", "10.0.0.1");
    std::string ip;
    QVERIFY(m_box->getIP(ip, nullptr, nullptr));
    QCOMPARE(ip, std::string("10.0.0.1"));
}

void BonjourBoxTest::errorsGoToStandardOutput() {
    std::ostringstream output;
    std::streambuf* const before = std::cout.rdbuf(output.rdbuf());
    QVERIFY(!m_box->ServiceError("something <b>bad</b>"));
    m_library->failNext("browse", kDNSServiceErr_Unknown);
    m_box->start("_gx7100._tcp", "local.");
    std::cout.rdbuf(before);
    QCOMPARE(output.str(),
             std::string("ERROR: something <b>bad</b>\n"
                         "ERROR: Unable to browse for service: _gx7100._tcp: Unknown Error\n"));
}

void BonjourBoxTest::withoutDiscoveryATypedAddressWorks() {
    m_library->failNext("browse", kDNSServiceErr_Unknown);
    m_box->start("_gx7100._tcp", "local.");
    m_box->setEditText("fe80::1%eth0");
    QCOMPARE(askedFor(*m_box), QStringLiteral("fe80::1%eth0 0 7100"));
}

void BonjourBoxTest::theEmptySlotsDoNothing() {
    m_box->start("_gx7100._tcp", "local.");
    found(*m_box, "unit1", "10.0.0.1");
    const QStringList before = rowsOf(*m_box);
    m_box->checkEditable(2);
    m_box->selectedItem(2);
    QCOMPARE(rowsOf(*m_box), before);
    QCOMPARE(m_box->currentIndex(), 0);
    QVERIFY(m_box->metaObject()->indexOfSlot("checkEditable(int)") >= 0);
    QVERIFY(m_box->metaObject()->indexOfSlot("selectedItem(int)") >= 0);
}

int main(int argc, char** argv) {
    return runTest<BonjourBoxTest>(argc, argv);
}

#include "BonjourBoxTest.moc"
