#include "NameLookup.h"
#include "TestEnvironment.h"

#include <QSemaphore>
#include <QSignalSpy>

using namespace std::chrono_literals;

namespace {

constexpr int patience = 20000;

// What a resolver on another thread waits for, and what it tells: it may outlive every test.
QSemaphore mayAnswer;
QSemaphore hasAnswered;

bool knowsLocalhost(const std::string& host) {
    return host == "localhost";
}

bool answersLate(const std::string& /*host*/) {
    mayAnswer.acquire();
    hasAnswered.release();
    return true;
}

} // namespace

class NameLookupTest : public QObject {
    Q_OBJECT

private slots:
    void finds_data() {
        QTest::addColumn<QString>("host");
        QTest::addColumn<bool>("found");

        QTest::newRow("known") << QStringLiteral("localhost") << true;
        QTest::newRow("unknown") << QStringLiteral("downloads.vestra.example") << false;
        QTest::newRow("empty") << QString() << false;
        QTest::newRow("IPv4 is not asked for") << QStringLiteral("192.0.2.1") << true;
        QTest::newRow("IPv6 is not asked for") << QStringLiteral("2001:db8::1") << true;
    }

    void finds() {
        QFETCH(QString, host);
        QFETCH(bool, found);
        NameLookup lookup(host, 1h, &knowsLocalhost);
        QSignalSpy finished(&lookup, &NameLookup::finished);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
        QCOMPARE(finished[0][0].toBool(), found);
    }

    void aResolverThatDoesNotAnswerIsGivenUp() {
        NameLookup lookup(QStringLiteral("host"), 1ms, &answersLate);
        QSignalSpy finished(&lookup, &NameLookup::finished);
        QTRY_COMPARE_WITH_TIMEOUT(finished.size(), 1, patience);
        QVERIFY(!finished[0][0].toBool());
        // Its answer comes too late to be told.
        mayAnswer.release();
        QVERIFY(hasAnswered.tryAcquire(1, patience));
        QTest::qWait(20);
        QCOMPARE(finished.size(), 1);
    }

    void nobodyWaitsForTheResolver() {
        std::make_unique<NameLookup>(QStringLiteral("host"), 1h, &answersLate).reset();
        mayAnswer.release();
        QVERIFY(hasAnswered.tryAcquire(1, patience));
    }

    void theSystemKnowsItself() {
        QVERIFY(NameLookup::systemResolve("localhost"));
        QVERIFY(!NameLookup::systemResolve(""));
    }
};

int main(int argc, char** argv) {
    return runTest<NameLookupTest>(argc, argv);
}

#include "test_name_lookup.moc"
