#include "Announcer.h"
#include "FakeDnsSd.h"
#include "TestEnvironment.h"

#include <QSignalSpy>

/// Simulated instruments as service discovery sees them.
class TestAnnouncer : public QObject {
    Q_OBJECT

private slots:
    void announces();
    void saysWhatFails();
    void withdrawsWhenDestroyed();
};

void TestAnnouncer::announces() {
    FakeDnsSd library;
    Announcer announcer;
    QSignalSpy announced(&announcer, &Announcer::announced);
    announcer.announce("unit 1", 7100);
    announcer.announce("unit \u00B5", 65535);

    // The TXT record is one entry of 13 bytes: model=GX-7100.
    DNSServiceRef first = nullptr;
    DNSServiceRef second = nullptr;
    QCOMPARE(QByteArray::fromStdString(library.nextCall(&first)),
             QByteArray("register 0 unit 1 _gx7100._tcp local. (default) 1bbc "
                        "0d6d6f64656c3d47582d37313030"));
    QCOMPARE(QByteArray::fromStdString(library.nextCall(&second)),
             QByteArray("register 0 unit \xC2\xB5 _gx7100._tcp local. (default) ffff "
                        "0d6d6f64656c3d47582d37313030"));
    library.replyToRegister(first, "unit 1");
    library.replyToRegister(second, "unit \xC2\xB5 #2");
    library.deliver();
    QCOMPARE(announced.count(), 2);
    QStringList names{announced[0][0].toString(), announced[1][0].toString()};
    names.sort();
    QCOMPARE(names, (QStringList{"unit 1", "unit \u00B5 #2"}));
}

void TestAnnouncer::saysWhatFails() {
    FakeDnsSd library;
    Announcer announcer;
    QSignalSpy failed(&announcer, &Announcer::failed);
    library.failNext("register", kDNSServiceErr_NameConflict);
    announcer.announce("unit 1", 7100);
    QCOMPARE(failed.count(), 1);
    QCOMPARE(failed[0][0].toString(),
             QStringLiteral("Unable to register service: unit 1: Name Conflict"));
}

void TestAnnouncer::withdrawsWhenDestroyed() {
    FakeDnsSd library;
    {
        Announcer announcer;
        announcer.announce("unit 1", 7100);
        QCOMPARE(library.running(), 1);
    }
    QCOMPARE(library.running(), 0);
    QVERIFY(library.misuses().empty());
}

int main(int argc, char** argv) {
    return runTest<TestAnnouncer>(argc, argv);
}

#include "test_announcer.moc"
