#include "ClientDialogue.h"
#include "TestEnvironment.h"

#include <arpa/inet.h>

using Lines = QStringList;

namespace {

const std::string typicalTxt("\x05"
                             "a=1=2"
                             "\x02"
                             "b="
                             "\x03"
                             "cde",
                             13);
const std::string typicalAddress("\xC0\xA8\x01\x07", 4);
const std::string typicalIPv6Address("\xFE\x80\0\0\0\0\0\0\0\0\0\0\0\0\0\x07", 16);

/// Port 7100 as the library delivers it, taken for a port in host byte order.
const QString portOf7100 = QString::number(htons(7100));

} // namespace

/// The road of a service: it appears, is resolved, its addresses are queried, it goes away.
class BonjourClientTest : public ClientDialogueTest {
    Q_OBJECT

private slots:
    void aServiceIsReportedOnceAnAddress();
    void aServiceOnTwoInterfacesIsReportedForBoth();
    void aWithdrawnServiceIsReportedAtOnce();
    void aServiceGoneBeforeItsResolveIsRemoved();
    void anotherFlagIsNotAnArrival();
    void theDoubleConversionOfThePortIsKept();
    void otherAndShortRecordsAreIgnored_data();
    void otherAndShortRecordsAreIgnored();
    void longerRecordsGiveTheirFirstBytes();
    void moreComingKeepsAResolve();
    void moreComingKeepsAQuery();
    void repeatedRepliesAreForNobody();
    void theLibrarysWarningIsSwitchedOff();
    void debugDoesNothing();
};

void BonjourClientTest::aServiceIsReportedOnceAnAddress() {
    const DNSServiceRef browse = m->browse();
    QCOMPARE(m->library.running(), 1);

    const DNSServiceRef resolve = m->appear(browse, "unit1");
    QCOMPARE(m->library.running(), 2);
    m->expectTold({});

    m->library.replyToResolve(resolve, 0, typicalTxt);
    m->expectTold({});
    const DNSServiceRef a = m->expect("query 3 inst.local. 1 1");
    const DNSServiceRef aaaa = m->expect("query 3 inst.local. 28 1");
    m->expectNoCall();
    QCOMPARE(m->library.running(), 3); // the resolve has ended

    m->library.replyToQuery(a, kDNSServiceFlagsAdd, 1, typicalAddress, 3);
    m->expectTold({"add unit1 _gx7100._tcp local. if 3 inst.local. 192.168.1.7 port " + portOf7100 +
                   " scope 0 {a: 1=2, b: }"});
    QCOMPARE(m->library.running(), 2);

    m->library.replyToQuery(aaaa, kDNSServiceFlagsAdd, 28, typicalIPv6Address, 3);
    m->expectTold({"add unit1 _gx7100._tcp local. if 3 inst.local. fe80::7 port " + portOf7100 +
                   " scope 3 {a: 1=2, b: }"});
    QCOMPARE(m->library.running(), 1); // the browse lasts
}

void BonjourClientTest::aServiceOnTwoInterfacesIsReportedForBoth() {
    const DNSServiceRef browse = m->browse();
    m->library.replyToBrowse(browse, kDNSServiceFlagsAdd | kDNSServiceFlagsMoreComing, "unit1", 3);
    m->library.replyToBrowse(browse, kDNSServiceFlagsAdd, "unit1", 4);
    m->expectTold({});
    for (const uint32_t index : {3U, 4U}) {
        DNSServiceRef resolve = nullptr;
        QCOMPARE(m->library.nextCall(&resolve),
                 "resolve " + std::to_string(index) + " unit1 _gx7100._tcp local.");
        m->library.replyToResolve(resolve, 0, {}, "inst.local.", index);
    }
    m->expectTold({});
    for (const uint32_t index : {3U, 4U}) {
        DNSServiceRef query = nullptr;
        QCOMPARE(m->library.nextCall(&query),
                 "query " + std::to_string(index) + " inst.local. 1 1");
        m->library.replyToQuery(query, 0, 1, typicalAddress, index);
        QCOMPARE(m->library.nextCall(&query),
                 "query " + std::to_string(index) + " inst.local. 28 1");
        m->library.replyToQuery(query, 0, 28, typicalIPv6Address, index);
    }
    const QString report =
        QStringLiteral("add unit1 _gx7100._tcp local. if %1 inst.local. %2 port %3 scope %4 {}");
    m->expectTold({report.arg("3", "192.168.1.7", portOf7100, "0"),
                   report.arg("3", "fe80::7", portOf7100, "3"),
                   report.arg("4", "192.168.1.7", portOf7100, "0"),
                   report.arg("4", "fe80::7", portOf7100, "4")});
}

void BonjourClientTest::aWithdrawnServiceIsReportedAtOnce() {
    const DNSServiceRef browse = m->browse();
    m->library.replyToBrowse(browse, 0, "unit1");
    m->expectTold({"remove unit1 _gx7100._tcp local."});
    m->expectNoCall();
    QCOMPARE(m->library.running(), 1);
}

void BonjourClientTest::aServiceGoneBeforeItsResolveIsRemoved() {
    const DNSServiceRef browse = m->browse();
    const DNSServiceRef resolve = m->appear(browse, "unit1");
    m->library.replyToBrowse(browse, 0, "unit1");
    m->expectTold({"remove unit1 _gx7100._tcp local."});
    m->expectNoCall();

    // The resolve then fails, as it must.
    m->library.replyWithFailure(resolve, kDNSServiceErr_NoSuchName);
    m->expectTold({"error Error resolving: No Such Name"});
    QCOMPARE(m->library.running(), 1);
}

void BonjourClientTest::anotherFlagIsNotAnArrival() {
    const DNSServiceRef browse = m->browse();
    m->library.replyToBrowse(browse, kDNSServiceFlagsMoreComing | kDNSServiceFlagsDefault, "unit1");
    m->expectTold({"remove unit1 _gx7100._tcp local."});
}

void BonjourClientTest::theDoubleConversionOfThePortIsKept() {
    if (Q_BYTE_ORDER == Q_LITTLE_ENDIAN)
        QCOMPARE(portOf7100, QStringLiteral("48155")); // 0xBC1B for 0x1BBC: not a mistake
    else
        QCOMPARE(portOf7100, QStringLiteral("7100"));
}

void BonjourClientTest::otherAndShortRecordsAreIgnored_data() {
    QTest::addColumn<int>("rrtype");
    QTest::addColumn<int>("size");

    QTest::newRow("A, no data") << 1 << 0;
    QTest::newRow("A, one byte short") << 1 << 3;
    QTest::newRow("AAAA, no data") << 28 << 0;
    QTest::newRow("AAAA, an IPv4 address") << 28 << 4;
    QTest::newRow("AAAA, one byte short") << 28 << 15;
    QTest::newRow("another type") << 16 << 16;
    QTest::newRow("type 0") << 0 << 16;
}

void BonjourClientTest::otherAndShortRecordsAreIgnored() {
    QFETCH(int, rrtype);
    QFETCH(int, size);
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyToResolve(resolve, 0, {});
    m->expectTold({});
    const DNSServiceRef a = m->expect("query 3 inst.local. 1 1");
    m->library.replyToQuery(a, 0, static_cast<uint16_t>(rrtype),
                            std::string(static_cast<std::size_t>(size), '\x01'));
    m->expectTold({});
    QCOMPARE(m->library.running(), 2); // the browse and the other query
}

void BonjourClientTest::longerRecordsGiveTheirFirstBytes() {
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyToResolve(resolve, 0, {});
    m->expectTold({});
    m->library.replyToQuery(m->expect("query 3 inst.local. 1 1"), 0, 1, typicalAddress + "more");
    m->library.replyToQuery(m->expect("query 3 inst.local. 28 1"), 0, 28,
                            typicalIPv6Address + "more");
    const QString report =
        QStringLiteral("add unit1 _gx7100._tcp local. if 3 inst.local. %1 port %2 scope %3 {}");
    m->expectTold(
        {report.arg("192.168.1.7", portOf7100, "0"), report.arg("fe80::7", portOf7100, "3")});
}

void BonjourClientTest::moreComingKeepsAResolve() {
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyToResolve(resolve, kDNSServiceFlagsMoreComing, {}, "first.local.");
    m->expectTold({});
    m->expect("query 3 first.local. 1 1");
    m->expect("query 3 first.local. 28 1");
    QCOMPARE(m->library.running(), 4);

    m->library.replyToResolve(resolve, 0, {}, "second.local.");
    m->expectTold({});
    m->expect("query 3 second.local. 1 1");
    m->expect("query 3 second.local. 28 1");
    QCOMPARE(m->library.running(), 5);
}

void BonjourClientTest::moreComingKeepsAQuery() {
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyToResolve(resolve, 0, {});
    m->expectTold({});
    const DNSServiceRef a = m->expect("query 3 inst.local. 1 1");
    m->library.replyToQuery(a, kDNSServiceFlagsMoreComing, 1, typicalAddress);
    m->library.deliver();
    QCOMPARE(m->library.running(), 3);
    m->library.replyToQuery(a, 0, 1, "\x0A\x01\x01\x01");
    const QString report =
        QStringLiteral("add unit1 _gx7100._tcp local. if 3 inst.local. %1 port %2 scope 0 {}");
    m->expectTold({report.arg("192.168.1.7", portOf7100), report.arg("10.1.1.1", portOf7100)});
    QCOMPARE(m->library.running(), 2);
}

void BonjourClientTest::repeatedRepliesAreForNobody() {
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyToResolve(resolve, 0, {});
    m->library.replyToResolve(resolve, 0, {});
    m->expectTold({});
    const DNSServiceRef a = m->expect("query 3 inst.local. 1 1");
    const DNSServiceRef aaaa = m->expect("query 3 inst.local. 28 1");
    m->expectNoCall();

    for (int i = 0; i < 3; ++i)
        m->library.replyToQuery(aaaa, kDNSServiceFlagsAdd, 28, typicalIPv6Address);
    m->library.replyWithFailure(a, kDNSServiceErr_Unknown);
    m->library.replyToQuery(a, kDNSServiceFlagsAdd, 1, typicalAddress);
    m->library.deliver();
    QCOMPARE(m->library.callbackCount(), 8);
    QStringList told = m->listener.take();
    told.sort();
    QCOMPARE(told, (Lines{"add unit1 _gx7100._tcp local. if 3 inst.local. fe80::7 port " +
                              portOf7100 + " scope 3 {}",
                          "error Error querying: Unknown Error"}));
    QCOMPARE(m->library.running(), 1);
}

void BonjourClientTest::theLibrarysWarningIsSwitchedOff() {
    qunsetenv("AVAHI_COMPAT_NOWARN");
    m->client->Clear();
    QCOMPARE(qgetenv("AVAHI_COMPAT_NOWARN"), QByteArray("1"));
}

void BonjourClientTest::debugDoesNothing() {
    m->client->Debug();
    m->expectNoCall();
    m->expectTold({});
}

int main(int argc, char** argv) {
    return runTest<BonjourClientTest>(argc, argv);
}

#include "BonjourClientTest.moc"
