#include "ClientDialogue.h"
#include "TestEnvironment.h"

/// A client that announces services and confirms records.
class BonjourClientRegisterTest : public ClientDialogueTest {
    Q_OBJECT

private slots:
    void announces_data();
    void announces();
    void aRegistrationLasts();
    void aFailedRegistrationEnds();
    void aRegistrationThatCannotStart();
    void severalNames();
    void confirms_data();
    void confirms();
    void refusesToConfirm_data();
    void refusesToConfirm();
    void aConfirmationThatFails();
};

void BonjourClientRegisterTest::announces_data() {
    QTest::addColumn<int>("port");
    QTest::addColumn<QString>("txt");
    QTest::addColumn<QByteArray>("call");

    const QByteArray call = "register 0 unit1 _gx7100._tcp local. (default) ";
    // The port in network byte order, the record with its length bytes.
    QTest::newRow("no keys") << 7100 << "" << call + "1bbc ";
    QTest::newRow("keys in order") << 7100 << "b=;a=1=2" << call + "1bbc 05613d313d3202623d";
    QTest::newRow("port 1") << 1 << "" << call + "0001 ";
    QTest::newRow("port 65535") << 65535 << "" << call + "ffff ";
    QTest::newRow("port 256") << 256 << "" << call + "0100 ";
}

void BonjourClientRegisterTest::announces() {
    QFETCH(int, port);
    QFETCH(QString, txt);
    QFETCH(QByteArray, call);
    std::map<std::string, std::string> keys;
    for (const QString& entry : txt.split(';', Qt::SkipEmptyParts))
        keys[entry.section('=', 0, 0).toStdString()] = entry.section('=', 1).toStdString();
    m->client->Register("unit1", "_gx7100._tcp", "local.", port, keys);
    QVERIFY(m->expect(call.constData()) != nullptr);
    m->expectTold({});
}

void BonjourClientRegisterTest::aRegistrationLasts() {
    m->client->Register("unit1", "_gx7100._tcp", "local.", 7100, {});
    const DNSServiceRef ref = m->expect("register 0 unit1 _gx7100._tcp local. (default) 1bbc ");
    m->library.replyToRegister(ref, "unit1 #2");
    m->expectTold({"registered unit1 #2 _gx7100._tcp local."});
    QCOMPARE(m->library.running(), 1);
    m->library.replyToRegister(ref, "unit1 #3");
    m->expectTold({"registered unit1 #3 _gx7100._tcp local."});
    m->client->Clear();
    QCOMPARE(m->library.running(), 0);
}

void BonjourClientRegisterTest::aFailedRegistrationEnds() {
    m->client->Register("unit1", "_gx7100._tcp", "local.", 7100, {});
    const DNSServiceRef ref = m->expect("register 0 unit1 _gx7100._tcp local. (default) 1bbc ");
    m->library.replyWithFailure(ref, kDNSServiceErr_NameConflict);
    m->library.replyToRegister(ref, "unit1");
    m->expectTold({"error Error registering: Name Conflict"});
    QCOMPARE(m->library.running(), 0);
}

void BonjourClientRegisterTest::aRegistrationThatCannotStart() {
    m->library.failNext("register", kDNSServiceErr_BadParam);
    m->client->Register("unit1", "_gx7100._tcp", "local.", 7100, {});
    m->expect("register 0 unit1 _gx7100._tcp local. (default) 1bbc ");
    m->expectTold({"error Unable to register service: unit1: Bad Parameter"});
    QCOMPARE(m->library.running(), 0);
}

void BonjourClientRegisterTest::severalNames() {
    for (int i = 0; i < 100; ++i)
        m->client->Register("unit", "_gx7100._tcp", "local.", 7100, {});
    m->expectTold({});
    m->client->Register("unit", "_gx7100._tcp", "local.", 7100, {});
    m->expectTold({"error Unable to register service: unit: Out of resources"});
    QCOMPARE(m->library.running(), 100);
}

void BonjourClientRegisterTest::confirms_data() {
    QTest::addColumn<QString>("ip");
    QTest::addColumn<QByteArray>("bytes");

    QTest::newRow("dotted") << "192.168.1.7" << QByteArray("c0a80107");
    QTest::newRow("zeros") << "0.0.0.0" << QByteArray("00000000");
    QTest::newRow("ones") << "255.255.255.255" << QByteArray("ffffffff");
    QTest::newRow("any separators") << "1-2,3x4" << QByteArray("01020304");
    QTest::newRow("spaces") << " 1 . 2 . 3 . 4 " << QByteArray("01020304");
    QTest::newRow("something behind") << "1.2.3.4 and more" << QByteArray("01020304");
    QTest::newRow("one byte each, whatever the number") << "256.257.-1.4" << QByteArray("0001ff04");
}

void BonjourClientRegisterTest::confirms() {
    QFETCH(QString, ip);
    QFETCH(QByteArray, bytes);
    m->client->Confirm("unit1.local.", ip.toStdString());
    m->expect(("reconfirm 0 unit1.local. 1 1 " + bytes).constData());
    m->expectTold({});
    QCOMPARE(m->library.running(), 0);
}

void BonjourClientRegisterTest::refusesToConfirm_data() {
    QTest::addColumn<QString>("ip");

    QTest::newRow("nothing") << "";
    QTest::newRow("three numbers") << "1.2.3";
    QTest::newRow("three numbers and a separator") << "1.2.3.";
    QTest::newRow("a name") << "unit1";
    QTest::newRow("IPv6") << "fe80::1";
    QTest::newRow("a number too large to read") << "1.2.3.99999999999";
    QTest::newRow("two separators") << "1..2.3.4";
}

void BonjourClientRegisterTest::refusesToConfirm() {
    QFETCH(QString, ip);
    m->client->Confirm("unit1", ip.toStdString());
    m->expectNoCall();
    m->expectTold({"error Unable to confirm: unit1: Invalid IP address: " + ip});
}

void BonjourClientRegisterTest::aConfirmationThatFails() {
    m->library.failNext("reconfirm", kDNSServiceErr_Unsupported);
    m->client->Confirm("unit1", "1.2.3.4");
    m->expect("reconfirm 0 unit1 1 1 01020304");
    m->expectTold({"error Unable to confirm: unit1: Unsupported"});
}

int main(int argc, char** argv) {
    return runTest<BonjourClientRegisterTest>(argc, argv);
}

#include "BonjourClientRegisterTest.moc"
