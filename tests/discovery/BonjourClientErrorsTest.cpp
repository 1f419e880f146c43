#include "ClientDialogue.h"
#include "TestEnvironment.h"

using Lines = QStringList;

namespace {

/// Fills every free slot but `left` with browses.
void occupySlots(ClientDialogue& dialogue, int left) {
    while (dialogue.library.running() < 100 - left)
        dialogue.browse();
}

/// What the client says when `action` throws.
QString thrownBy(const std::function<void()>& action) {
    try {
        action();
    } catch (const BonjourClient::Error& error) {
        return QString::fromUtf8(error.what());
    }
    return QStringLiteral("nothing thrown");
}

const std::string typicalAddress("\xC0\xA8\x01\x07", 4);

} // namespace

/// What fails, how it is worded, and when it throws.
class BonjourClientErrorsTest : public ClientDialogueTest {
    Q_OBJECT

private slots:
    void everyCodeHasItsText_data();
    void everyCodeHasItsText();
    void aBrowseThatCannotStart();
    void aFailedBrowseStaysOpen();
    void aResolveThatCannotStartIsNotReported();
    void aFailedResolve();
    void queriesThatCannotStart();
    void aFailedQuery();
    void moreComingDoesNotSaveAFailedOperation();
    void aFailedProcessingEndsTheOperation();
    void aFailedProcessingAfterAnEndedOperationIsStillReported();
    void noSlotForABrowse();
    void noSlotForAResolve();
    void noSlotForTheQueries_data();
    void noSlotForTheQueries();
    void slotsAreUsedAgain();
    void throwsOnlyForTheCallersOwnCalls();
    void nobodyIsToldWithoutAListener();
};

void BonjourClientErrorsTest::everyCodeHasItsText_data() {
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("text");

    QTest::newRow("-65537") << -65537 << ": Unknown Error";
    QTest::newRow("-65538") << -65538 << ": No Such Name";
    QTest::newRow("-65539") << -65539 << ": Out Of Memory";
    QTest::newRow("-65540") << -65540 << ": Bad Parameter";
    QTest::newRow("-65541") << -65541 << ": Bad Reference";
    QTest::newRow("-65542") << -65542 << ": Bad State";
    QTest::newRow("-65543") << -65543 << ": Bad Flags";
    QTest::newRow("-65544") << -65544 << ": Unsupported";
    QTest::newRow("-65545") << -65545 << ": Not Initialized";
    QTest::newRow("-65546 is not known") << -65546 << "";
    QTest::newRow("-65547") << -65547 << ": Already Registered";
    QTest::newRow("-65548") << -65548 << ": Name Conflict";
    QTest::newRow("-65549") << -65549 << ": Invalid";
    QTest::newRow("-65550") << -65550 << ": Firewall";
    QTest::newRow("-65551") << -65551 << ": Incompatible";
    QTest::newRow("-65552") << -65552 << ": Bad Interface Index";
    QTest::newRow("-65553") << -65553 << ": Refused";
    QTest::newRow("-65554") << -65554 << ": No Such Record";
    QTest::newRow("-65555") << -65555 << ": No Authorization";
    QTest::newRow("-65556") << -65556 << ": No Such Key";
    QTest::newRow("-65557") << -65557 << ": NAT Traversal";
    QTest::newRow("-65558") << -65558 << ": Double NAT";
    QTest::newRow("-65559") << -65559 << ": Bad Time";
    QTest::newRow("-65560 is not known") << -65560 << "";
    QTest::newRow("-65536 is not known") << -65536 << "";
    QTest::newRow("-1 is not known") << -1 << "";
    QTest::newRow("1 is not known") << 1 << "";
    QTest::newRow("the largest") << std::numeric_limits<int>::max() << "";
    QTest::newRow("the smallest") << std::numeric_limits<int>::min() << "";
}

void BonjourClientErrorsTest::everyCodeHasItsText() {
    QFETCH(int, code);
    QFETCH(QString, text);

    m->library.failNext("browse", code);
    m->client->Browse("_gx7100._tcp");
    m->expect("browse 0 _gx7100._tcp (default)");
    m->expectTold({"error Unable to browse for service: _gx7100._tcp" + text});

    const DNSServiceRef browse = m->browse();
    m->library.replyWithFailure(browse, code);
    m->expectTold({"error Error browsing" + text});
}

void BonjourClientErrorsTest::aBrowseThatCannotStart() {
    m->library.failNext("browse", kDNSServiceErr_Unknown);
    m->client->Browse("_gx7100._tcp");
    QVERIFY(m->expect("browse 0 _gx7100._tcp (default)") == nullptr);
    m->expectTold({"error Unable to browse for service: _gx7100._tcp: Unknown Error"});
    QCOMPARE(m->library.running(), 0);

    // The slot is free again, whatever the library left in it.
    occupySlots(*m, 0);
    QCOMPARE(m->library.running(), 100);
}

void BonjourClientErrorsTest::aFailedBrowseStaysOpen() {
    const DNSServiceRef browse = m->browse();
    m->library.replyWithFailure(browse, kDNSServiceErr_Refused, kDNSServiceFlagsAdd);
    m->expectTold({"error Error browsing: Refused"});
    m->expectNoCall();
    m->appear(browse, "unit1");
}

void BonjourClientErrorsTest::aResolveThatCannotStartIsNotReported() {
    const DNSServiceRef browse = m->browse();
    m->library.failNext("resolve", kDNSServiceErr_BadParam);
    QVERIFY(m->appear(browse, "unit1") == nullptr);
    m->expectTold({});
    QCOMPARE(m->library.running(), 1);
    QVERIFY(m->appear(browse, "unit2") != nullptr);
}

void BonjourClientErrorsTest::aFailedResolve() {
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyWithFailure(resolve, kDNSServiceErr_NoSuchName);
    m->expectTold({"error Error resolving: No Such Name"});
    m->expectNoCall();
    QCOMPARE(m->library.running(), 1);
}

void BonjourClientErrorsTest::queriesThatCannotStart() {
    const DNSServiceRef browse = m->browse();
    const DNSServiceRef both = m->appear(browse, "unit1");
    m->library.failNext("query 3 inst.local. 1 1", kDNSServiceErr_NoMemory);
    m->library.failNext("query 3 inst.local. 28 1", kDNSServiceErr_BadFlags);
    m->library.replyToResolve(both, 0, {});
    m->expectTold({"error Error resolving: Out Of Memory", "error Error resolving: Bad Flags"});
    m->expect("query 3 inst.local. 1 1");
    m->expect("query 3 inst.local. 28 1");
    QCOMPARE(m->library.running(), 1);

    const DNSServiceRef one = m->appear(browse, "unit1");
    m->library.failNext("query 3 inst.local. 1 1", kDNSServiceErr_NoMemory);
    m->library.replyToResolve(one, 0, {});
    m->expectTold({"error Error resolving: Out Of Memory"});
    m->expect("query 3 inst.local. 1 1");
    QVERIFY(m->expect("query 3 inst.local. 28 1") != nullptr);
    QCOMPARE(m->library.running(), 2);
}

void BonjourClientErrorsTest::aFailedQuery() {
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyToResolve(resolve, 0, {});
    m->expectTold({});
    m->library.replyWithFailure(m->expect("query 3 inst.local. 1 1"), kDNSServiceErr_NoSuchRecord);
    m->expectTold({"error Error querying: No Such Record"});
    QCOMPARE(m->library.running(), 2);
}

void BonjourClientErrorsTest::moreComingDoesNotSaveAFailedOperation() {
    const DNSServiceRef browse = m->browse();
    m->library.replyWithFailure(m->appear(browse, "unit1"), kDNSServiceErr_Unknown,
                                kDNSServiceFlagsMoreComing);
    m->expectTold({"error Error resolving: Unknown Error"});
    QCOMPARE(m->library.running(), 1);

    m->library.replyToResolve(m->appear(browse, "unit1"), 0, {});
    m->expectTold({});
    m->library.replyWithFailure(m->expect("query 3 inst.local. 1 1"), kDNSServiceErr_Unknown,
                                kDNSServiceFlagsMoreComing);
    m->expectTold({"error Error querying: Unknown Error"});
    QCOMPARE(m->library.running(), 2);
}

void BonjourClientErrorsTest::aFailedProcessingEndsTheOperation() {
    const DNSServiceRef browse = m->browse();
    m->library.failProcessing(browse, kDNSServiceErr_BadReference);
    m->expectTold({"error Unable to process result: Bad Reference"});
    QCOMPARE(m->library.running(), 0);
}

void BonjourClientErrorsTest::aFailedProcessingAfterAnEndedOperationIsStillReported() {
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    m->library.replyToResolve(resolve, 0, {});
    m->library.failProcessing(resolve, kDNSServiceErr_Unknown);
    m->expectTold({"error Unable to process result: Unknown Error"});
    m->expect("query 3 inst.local. 1 1");
    m->expect("query 3 inst.local. 28 1");
    QCOMPARE(m->library.running(), 3); // nothing else was ended
}

void BonjourClientErrorsTest::noSlotForABrowse() {
    occupySlots(*m, 0);
    m->client->Browse("_gx7100._tcp");
    m->expectTold({"error Unable to browse for service: _gx7100._tcp: Out of resources"});
    m->expectNoCall();
    QCOMPARE(m->library.running(), 100);
}

void BonjourClientErrorsTest::noSlotForAResolve() {
    const DNSServiceRef browse = m->browse();
    occupySlots(*m, 0);
    m->library.replyToBrowse(browse, kDNSServiceFlagsAdd, "unit1");
    m->expectTold({"error Error browsing: Out of resources"});
    m->expectNoCall();

    m->library.replyToBrowse(browse, 0, "unit1");
    m->expectTold({"remove unit1 _gx7100._tcp local."});
}

void BonjourClientErrorsTest::noSlotForTheQueries_data() {
    QTest::addColumn<int>("slotsLeft");
    QTest::addColumn<QStringList>("calls");

    QTest::newRow("none: never reported") << 0 << Lines{""};
    QTest::newRow("one: the A query") << 1 << Lines{"query 3 inst.local. 1 1", ""};
    QTest::newRow("two: both") << 2
                               << Lines{"query 3 inst.local. 1 1", "query 3 inst.local. 28 1", ""};
}

void BonjourClientErrorsTest::noSlotForTheQueries() {
    QFETCH(int, slotsLeft);
    QFETCH(QStringList, calls);
    const DNSServiceRef resolve = m->appear(m->browse(), "unit1");
    occupySlots(*m, slotsLeft);
    m->library.replyToResolve(resolve, 0, {});
    m->expectTold({});
    for (const QString& call : calls)
        QCOMPARE(QString::fromStdString(m->library.nextCall()), call);
    QCOMPARE(m->library.running(), 99); // the resolve has ended all the same
}

void BonjourClientErrorsTest::slotsAreUsedAgain() {
    const DNSServiceRef browse = m->browse();
    for (int i = 0; i < 250; ++i) {
        m->library.replyToResolve(m->appear(browse, "unit1"), 0, {});
        m->expectTold({});
        m->library.replyToQuery(m->expect("query 3 inst.local. 1 1"), 0, 1, typicalAddress);
        m->library.replyWithFailure(m->expect("query 3 inst.local. 28 1"), kDNSServiceErr_Unknown);
        m->library.deliver();
        QCOMPARE(m->listener.take().size(), 2);
        QCOMPARE(m->library.running(), 1);
    }
}

void BonjourClientErrorsTest::throwsOnlyForTheCallersOwnCalls() {
    m->listener.isToThrow = true;
    const QString browseFailure = "Unable to browse for service: _gx7100._tcp";

    m->library.failNext("browse", kDNSServiceErr_Firewall);
    QCOMPARE(thrownBy([this] { m->client->Browse("_gx7100._tcp"); }), browseFailure + ": Firewall");
    m->library.failNext("register", kDNSServiceErr_NameConflict);
    QCOMPARE(thrownBy([this] { m->client->Register("unit1", "_gx7100._tcp", "local.", 7100, {}); }),
             QStringLiteral("Unable to register service: unit1: Name Conflict"));
    QCOMPARE(thrownBy([this] { m->client->Confirm("unit1", "nonsense"); }),
             QStringLiteral("Unable to confirm: unit1: Invalid IP address: nonsense"));
    m->library.failNext("reconfirm", kDNSServiceErr_Unsupported);
    QCOMPARE(thrownBy([this] { m->client->Confirm("unit1", "1.2.3.4"); }),
             QStringLiteral("Unable to confirm: unit1: Unsupported"));
    QCOMPARE(m->library.running(), 0);
    while (!m->library.nextCall().empty()) {
    }
    QCOMPARE(m->listener.take().size(), 4);

    // Inside a callback nothing is thrown, whatever the listener wants.
    const DNSServiceRef browse = m->browse();
    m->library.replyWithFailure(m->appear(browse, "unit1"), kDNSServiceErr_Unknown);
    m->library.replyWithFailure(browse, kDNSServiceErr_Unknown);
    m->library.failProcessing(browse, kDNSServiceErr_Unknown);
    m->library.deliver();
    QCOMPARE(m->listener.take().size(), 3);

    occupySlots(*m, 0);
    QCOMPARE(thrownBy([this] { m->client->Browse("_gx7100._tcp"); }),
             browseFailure + ": Out of resources");
    QCOMPARE(thrownBy([this] { m->client->Register("unit1", "_gx7100._tcp", "local.", 7100, {}); }),
             QStringLiteral("Unable to register service: unit1: Out of resources"));
}

void BonjourClientErrorsTest::nobodyIsToldWithoutAListener() {
    m->client = std::make_unique<BonjourClient>(nullptr);
    m->library.failNext("browse", kDNSServiceErr_Unknown);
    m->client->Browse("_gx7100._tcp");
    m->expect("browse 0 _gx7100._tcp (default)");
    m->client->Confirm("unit1", "nonsense");

    const DNSServiceRef browse = m->browse();
    m->library.replyWithFailure(browse, kDNSServiceErr_Unknown);
    m->library.replyToBrowse(browse, 0, "unit1");
    m->library.replyToResolve(m->appear(browse, "unit1"), 0, {});
    m->library.deliver();
    m->library.replyToQuery(m->expect("query 3 inst.local. 1 1"), 0, 1, typicalAddress);
    m->library.deliver();
    m->client->Register("unit1", "_gx7100._tcp", "local.", 7100, {});
    m->expect("query 3 inst.local. 28 1");
    m->library.replyToRegister(m->expect("register 0 unit1 _gx7100._tcp local. (default) 1bbc "),
                               "unit1");
    m->expectTold({});
}

int main(int argc, char** argv) {
    return runTest<BonjourClientErrorsTest>(argc, argv);
}

#include "BonjourClientErrorsTest.moc"
