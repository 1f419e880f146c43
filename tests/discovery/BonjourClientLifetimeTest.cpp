#include "ClientDialogue.h"
#include "TestEnvironment.h"

namespace {

const std::string typicalAddress("\xC0\xA8\x01\x07", 4);

/// What may happen to a client while it is in the middle of telling something.
enum class Deed { Destroy, Clear, ClearAndBrowse };

} // namespace

Q_DECLARE_METATYPE(Deed)

/// Clients that are cleared or destroyed with answers pending or in the middle of one. Mostly for
/// the address sanitizer to judge: nothing may be touched after it is gone, nor be left behind.
class BonjourClientLifetimeTest : public ClientDialogueTest {
    Q_OBJECT

private slots:
    void clearWithRepliesPending();
    void destroyedWithRepliesPending();
    void aClearedClientStartsAfresh();
    void endedInsideACall_data();
    void endedInsideACall();
    void endedInsideAFailedStart_data() { endedInsideACall_data(); }
    void endedInsideAFailedStart();
    void aFailedProcessingOfADestroyedClient();

private:
    DNSServiceRef resolved(DNSServiceRef browse, int rrtype);
    void during(Deed deed);
};

/// A query for a record of `rrtype`, the answer to which is awaited.
DNSServiceRef BonjourClientLifetimeTest::resolved(DNSServiceRef browse, int rrtype) {
    m->library.replyToResolve(m->appear(browse, "unit1"), 0, {});
    m->library.deliver();
    const DNSServiceRef a = m->expect("query 3 inst.local. 1 1");
    const DNSServiceRef aaaa = m->expect("query 3 inst.local. 28 1");
    return rrtype == 1 ? a : aaaa;
}

/// Has the client ended by the next call to its listener.
void BonjourClientLifetimeTest::during(Deed deed) {
    m->listener.during = [this, deed] {
        m->listener.during = nullptr;
        if (deed == Deed::Destroy) {
            m->client.reset();
            return;
        }
        m->client->Clear();
        if (deed == Deed::ClearAndBrowse)
            m->client->Browse("_other._tcp");
    };
}

void BonjourClientLifetimeTest::clearWithRepliesPending() {
    const DNSServiceRef browse = m->browse();
    const DNSServiceRef a = resolved(browse, 1);
    const DNSServiceRef resolve = m->appear(browse, "unit2");
    m->client->Register("own", "_gx7100._tcp", "local.", 7100, {});
    const DNSServiceRef registration =
        m->expect("register 0 own _gx7100._tcp local. (default) 1bbc ");

    m->library.replyToBrowse(browse, kDNSServiceFlagsAdd, "unit3");
    m->library.replyToBrowse(browse, 0, "unit1");
    m->library.replyToQuery(a, 0, 1, typicalAddress);
    m->library.replyToResolve(resolve, 0, {});
    m->library.replyToRegister(registration, "own");
    m->client->Clear();

    QCOMPARE(m->library.running(), 0);
    const int before = m->library.callbackCount();
    m->expectTold({});
    m->expectNoCall();
    QCOMPARE(m->library.callbackCount(), before);
}

void BonjourClientLifetimeTest::destroyedWithRepliesPending() {
    const DNSServiceRef browse = m->browse();
    m->library.replyToQuery(resolved(browse, 1), 0, 1, typicalAddress);
    m->library.replyToBrowse(browse, 0, "unit1");
    m->client.reset();
    m->expectTold({});
}

void BonjourClientLifetimeTest::aClearedClientStartsAfresh() {
    m->browse();
    m->client->Clear();
    m->client->Clear();
    QCOMPARE(m->library.running(), 0);
    const DNSServiceRef browse = m->browse();
    m->library.replyToBrowse(browse, 0, "unit1");
    m->expectTold({"remove unit1 _gx7100._tcp local."});
}

void BonjourClientLifetimeTest::endedInsideACall_data() {
    QTest::addColumn<Deed>("deed");

    QTest::newRow("destroyed") << Deed::Destroy;
    QTest::newRow("cleared") << Deed::Clear;
    QTest::newRow("cleared and in use again") << Deed::ClearAndBrowse;
}

void BonjourClientLifetimeTest::endedInsideACall() {
    QFETCH(Deed, deed);
    using Answer = std::function<void(DNSServiceRef browse)>;
    const std::vector<std::pair<const char*, Answer>> answers = {
        {"remove unit1 _gx7100._tcp local.",
         [this](DNSServiceRef browse) { m->library.replyToBrowse(browse, 0, "unit1"); }},
        {"error Error browsing: Unknown Error",
         [this](DNSServiceRef browse) {
             m->library.replyWithFailure(browse, kDNSServiceErr_Unknown);
             m->library.replyWithFailure(browse, kDNSServiceErr_Unknown);
         }},
        {"error Error resolving: Unknown Error",
         [this](DNSServiceRef browse) {
             const DNSServiceRef resolve = m->appear(browse, "unit1");
             m->library.replyWithFailure(resolve, kDNSServiceErr_Unknown);
             m->library.replyToResolve(resolve, 0, {});
         }},
        {"error Error resolving: Bad State",
         [this](DNSServiceRef browse) {
             m->library.failNext("query 3 inst.local. 1", kDNSServiceErr_BadState);
             m->library.replyToResolve(m->appear(browse, "unit1"), 0, {});
         }},
        {"error Error querying: Unknown Error",
         [this](DNSServiceRef browse) {
             const DNSServiceRef query = resolved(browse, 1);
             m->library.replyWithFailure(query, kDNSServiceErr_Unknown);
             m->library.replyToQuery(query, 0, 1, typicalAddress);
         }},
        {"add unit1 _gx7100._tcp local. if 3 inst.local. fe80::",
         [this](DNSServiceRef browse) {
             const DNSServiceRef query = resolved(browse, 28);
             m->library.replyToQuery(query, 0, 28, std::string("\xFE\x80", 2) + std::string(14, 0));
             m->library.replyToQuery(query, 0, 28, std::string("\xFE\x80", 2) + std::string(14, 0));
         }},
        {"add unit1 _gx7100._tcp local. if 3 inst.local. 192.168.1.7",
         [this](DNSServiceRef browse) {
             m->library.replyToQuery(resolved(browse, 1), kDNSServiceFlagsMoreComing, 1,
                                     typicalAddress);
         }},
        {"registered own _gx7100._tcp local.",
         [this](DNSServiceRef) {
             m->client->Register("own", "_gx7100._tcp", "local.", 7100, {});
             m->library.replyToRegister(
                 m->expect("register 0 own _gx7100._tcp local. (default) 1bbc "), "own");
         }},
        {"error Error registering: Name Conflict",
         [this](DNSServiceRef) {
             m->client->Register("own", "_gx7100._tcp", "local.", 7100, {});
             m->library.replyWithFailure(
                 m->expect("register 0 own _gx7100._tcp local. (default) 1bbc "),
                 kDNSServiceErr_NameConflict);
         }},
        {"error Unable to process result: Unknown Error",
         [this](DNSServiceRef browse) {
             m->library.failProcessing(browse, kDNSServiceErr_Unknown);
         }},
    };
    for (const auto& [told, answer] : answers) {
        answer(m->browse());
        during(deed);
        m->library.deliver();
        const QStringList lines = m->listener.take();
        QCOMPARE(lines.size(), 1);
        QVERIFY2(lines.first().startsWith(QLatin1String(told)), qPrintable(lines.first()));
        QCOMPARE(m->library.running(), deed == Deed::ClearAndBrowse ? 1 : 0);
        QVERIFY(m->library.misuses().empty());

        m.reset();
        m = std::make_unique<ClientDialogue>();
    }
}

void BonjourClientLifetimeTest::endedInsideAFailedStart() {
    QFETCH(Deed, deed);
    m->library.failNext("browse 0 _gx7100._tcp", kDNSServiceErr_Unknown);
    during(deed);
    m->client->Browse("_gx7100._tcp");
    m->expectTold({"error Unable to browse for service: _gx7100._tcp: Unknown Error"});
    QCOMPARE(m->library.running(), deed == Deed::ClearAndBrowse ? 1 : 0);
}

void BonjourClientLifetimeTest::aFailedProcessingOfADestroyedClient() {
    const DNSServiceRef browse = m->browse();
    m->library.replyToBrowse(browse, 0, "unit1");
    m->library.failProcessing(browse, kDNSServiceErr_Unknown);
    during(Deed::Destroy);
    m->expectTold({"remove unit1 _gx7100._tcp local."});
}

int main(int argc, char** argv) {
    return runTest<BonjourClientLifetimeTest>(argc, argv);
}

#include "BonjourClientLifetimeTest.moc"
