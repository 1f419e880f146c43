#include "ClientDialogue.h"

DNSServiceRef ClientDialogue::expect(const char* call) {
    DNSServiceRef ref = nullptr;
    const std::string made = library.nextCall(&ref);
    if (!QTest::qCompare(QString::fromStdString(made), QString::fromUtf8(call), "the next call",
                         "expected", __FILE__, __LINE__))
        return nullptr;
    return ref;
}

void ClientDialogue::expectNoCall() {
    QCOMPARE(QString::fromStdString(library.nextCall()), QString());
}

void ClientDialogue::expectTold(const QStringList& lines) {
    library.deliver();
    QCOMPARE(listener.take(), lines);
}

DNSServiceRef ClientDialogue::browse() {
    client->Browse("_gx7100._tcp");
    return expect("browse 0 _gx7100._tcp (default)");
}

DNSServiceRef ClientDialogue::appear(DNSServiceRef browse, const std::string& name) {
    library.replyToBrowse(browse, kDNSServiceFlagsAdd, name);
    library.deliver();
    return expect(("resolve 3 " + name + " _gx7100._tcp local.").c_str());
}

void ClientDialogue::close() {
    client.reset();
    QCOMPARE(library.running(), 0);
    const auto& misuses = library.misuses();
    QVERIFY2(misuses.empty(), misuses.empty() ? "" : misuses.front().c_str());
}
