#include "BonjourClientCallbackWindow.h"
#include "BonjourClientEventProcessor.h"
#include "BonjourClientImpl.h"
#include "BonjourResolver.h"
#include "BonjourServiceRef_Private.h"
#include "ClientDialogue.h"
#include "TestEnvironment.h"

#include <QSocketNotifier>

/// The pieces that the client is made of, and the ones that stand beside it.
class BonjourPartsTest : public ClientDialogueTest {
    Q_OBJECT

private slots:
    void theTableHasOneHundredSlots();
    void aSlotIsFreedByIndexOrByReference();
    void indicesOutsideTheTableDoNothing();
    void aReferenceIsNotSharedByACopy();
    void freeingASlotCutsItsContextOff();
    void selectingAgainWatchesOnce();
    void theProcessorDeliversWithoutAnEventLoop();
    void aProcessorWithoutClientDoesNothing();
    void theResolverKeepsWhatItIsTold();
    void theResolverForgetsTheFirstOfAName();
    void aPlainListenerWantsNothingThrown();

private:
    /// An operation that the library knows, as a reference to put into a slot.
    DNSServiceRef anOperation() {
        DNSServiceRef ref = nullptr;
        m->library.start("an operation", &ref, {});
        return ref;
    }
};

void BonjourPartsTest::theTableHasOneHundredSlots() {
    {
        BonjourClientCallbackWindow window(nullptr);
        for (int i = 0; i < 100; ++i) {
            QCOMPARE(window.GetFreeDNSServiceRef(), i);
            QVERIFY(!window.SelectDNSServiceRef(i));
            *window.GetDNSServiceRef(i) = anOperation();
        }
        QCOMPARE(window.GetFreeDNSServiceRef(), -1);
        QCOMPARE(m->library.running(), 100);
        window._OutputDebugInfo("nothing");
    }
    QCOMPARE(m->library.running(), 0);
}

void BonjourPartsTest::aSlotIsFreedByIndexOrByReference() {
    BonjourClientCallbackWindow window(nullptr);
    for (int i = 0; i < 100; ++i)
        *window.GetDNSServiceRef(i) = anOperation();
    const DNSServiceRef ref = *window.GetDNSServiceRef(57);
    QCOMPARE(window.FindDNSServiceRefIndex(ref), 57);
    window.FreeDNSServiceRef(ref);
    QCOMPARE(window.FindDNSServiceRefIndex(ref), -1);
    QCOMPARE(window.GetFreeDNSServiceRef(), 57);
    window.FreeDNSServiceRef(ref);
    window.FreeDNSServiceRef(57);
    window.FreeDNSServiceRef(12);
    QCOMPARE(window.GetFreeDNSServiceRef(), 12);
    QCOMPARE(m->library.running(), 98);
    QVERIFY(m->library.misuses().empty());
}

void BonjourPartsTest::indicesOutsideTheTableDoNothing() {
    BonjourClientCallbackWindow window(nullptr);
    for (const int index : {-1, 100, std::numeric_limits<int>::max()}) {
        DNSServiceRef* const place = window.GetDNSServiceRef(index);
        QCOMPARE(place, window.GetDNSServiceRef(-1));
        QVERIFY(*place == nullptr);
        QVERIFY(!window.SelectDNSServiceRef(index));
        window.FreeDNSServiceRef(index);
    }
    QVERIFY(window.GetDNSServiceRef(-1) != window.GetDNSServiceRef(0));
    QVERIFY(window.GetDNSServiceRef(99) != window.GetDNSServiceRef(100));
    QCOMPARE(window.FindDNSServiceRefIndex(nullptr), -1);
    window.FreeDNSServiceRef(nullptr);
    QVERIFY(m->library.misuses().empty());
}

void BonjourPartsTest::aReferenceIsNotSharedByACopy() {
    BonjourServiceRef original(nullptr);
    *original.Ref() = anOperation();
    QVERIFY(original.Select());
    {
        BonjourServiceRef copy(original);
        QVERIFY(*copy.Ref() == nullptr);
        QVERIFY(!copy.Select());
        copy.Free();
    }
    QCOMPARE(m->library.running(), 1);
    original.Free();
    QCOMPARE(m->library.running(), 0);
    original.Free();
    QVERIFY(m->library.misuses().empty());
}

void BonjourPartsTest::freeingASlotCutsItsContextOff() {
    BonjourClientImpl client(nullptr);
    const auto context = std::make_shared<BonjourClientImpl::_Context>(&client, "unit1", "_t", "d");
    QCOMPARE(context->port, 0U);
    BonjourServiceRef slot(&client);
    *slot.Ref() = anOperation();
    slot.Hold(context);
    QCOMPARE(context.use_count(), 2L);
    slot.Free();
    QVERIFY(context->impl == nullptr);
    QCOMPARE(context.use_count(), 1L);
}

void BonjourPartsTest::selectingAgainWatchesOnce() {
    BonjourServiceRef_Private slot(nullptr);
    QVERIFY(!slot.Select());
    QVERIFY(slot.findChildren<QSocketNotifier*>().isEmpty());
    slot.m_ref = anOperation();
    QVERIFY(slot.Select());
    QVERIFY(slot.Select());
    QCOMPARE(slot.findChildren<QSocketNotifier*>(), QList<QSocketNotifier*>{slot.m_notifier});
    QCOMPARE(slot.m_notifier->type(), QSocketNotifier::Read);
    QCOMPARE(static_cast<int>(slot.m_notifier->socket()), m->library.socketOf(slot.m_ref));
    slot.Free();
    QVERIFY(slot.findChildren<QSocketNotifier*>().isEmpty());
}

void BonjourPartsTest::theProcessorDeliversWithoutAnEventLoop() {
    BonjourClientImpl client(&m->listener);
    client.Browse("_gx7100._tcp");
    const DNSServiceRef browse = m->expect("browse 0 _gx7100._tcp (default)");
    m->library.replyToBrowse(browse, 0, "unit1");
    BonjourClientEventProcessor(&client).ProcessEvent(browse);
    QCOMPARE(m->listener.take(), QStringList{"remove unit1 _gx7100._tcp local."});
}

void BonjourPartsTest::aProcessorWithoutClientDoesNothing() {
    const DNSServiceRef ref = anOperation();
    BonjourClientEventProcessor(nullptr).ProcessEvent(ref);
    QVERIFY(m->library.misuses().empty());
    m->library.deallocate(ref);
}

void BonjourPartsTest::theResolverKeepsWhatItIsTold() {
    BonjourResolver resolver;
    QVERIFY(resolver.Lookup("unit1") == nullptr);
    resolver.AddService("Unit1", "_gx7100._tcp", "local.", 3, "inst.local.",
                        SocketAddress(std::string("192.168.1.7")), {{"a", "1"}});
    resolver.AddService("Unit1", "_other._tcp", "lan.", 4, "second.local.",
                        SocketAddress(std::string("192.168.1.8")), {});
    const BonjourResolver::HostInfo* const host = resolver.Lookup("uNIT1");
    QVERIFY(host != nullptr);
    QCOMPARE(host->name, std::string("Unit1"));
    QCOMPARE(host->regtype, std::string("_gx7100._tcp"));
    QCOMPARE(host->domain, std::string("local."));
    QCOMPARE(host->interfaceIndex, 3U);
    QCOMPARE(host->hostTarget, std::string("inst.local."));
    QCOMPARE(host->address.Presentation(), std::string("192.168.1.7"));
    QCOMPARE(host->txt.at("a"), std::string("1"));
    QVERIFY(resolver.Lookup("unit") == nullptr);
    QVERIFY(resolver.Lookup("unit10") == nullptr);
    QVERIFY(!resolver.IsChanged());
}

void BonjourPartsTest::theResolverForgetsTheFirstOfAName() {
    BonjourResolver resolver;
    const SocketAddress address(std::string("192.168.1.7"));
    resolver.AddService("unit1", "_t", "local.", 3, "first.local.", address, {});
    resolver.AddService("unit1", "_t", "local.", 3, "second.local.", address, {});
    resolver.RemoveService("UNIT1", "_t", "local.");
    QVERIFY(!resolver.IsChanged());
    QCOMPARE(resolver.Lookup("unit1")->hostTarget, std::string("first.local."));
    resolver.RemoveService("unit1", "another type", "another domain");
    QVERIFY(resolver.IsChanged());
    QCOMPARE(resolver.Lookup("unit1")->hostTarget, std::string("second.local."));
    resolver.RemoveService("unit1", "_t", "local.");
    QVERIFY(resolver.Lookup("unit1") == nullptr);
}

void BonjourPartsTest::aPlainListenerWantsNothingThrown() {
    BonjourClientListener listener;
    listener.AddService("unit1", "_t", "local.", 3, "inst.local.", SocketAddress(Socket::IPv4), {});
    listener.RemoveService("unit1", "_t", "local.");
    listener.ServiceRegistered("unit1", "_t", "local.");
    QVERIFY(!listener.ServiceError("an error"));
}

int main(int argc, char** argv) {
    return runTest<BonjourPartsTest>(argc, argv);
}

#include "BonjourPartsTest.moc"
