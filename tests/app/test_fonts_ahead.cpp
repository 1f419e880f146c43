// Reading fonts ahead leaves the thread that asked for it as it was.

#include "FontsAhead.h"
#include "TestEnvironment.h"

#include <sys/resource.h>

class TestFontsAhead : public QObject {
    Q_OBJECT

private slots:
    void onlyTheReaderHasTheLowestPriority() {
        const int before = getpriority(PRIO_PROCESS, 0);
        { const FontsAhead fonts; }
        QCOMPARE(getpriority(PRIO_PROCESS, 0), before);
    }

    void theStartupIdStays() {
        const auto restore = qScopeGuard([] { qunsetenv("DESKTOP_STARTUP_ID"); });
        qputenv("DESKTOP_STARTUP_ID", "desk_TIME42");
        { const FontsAhead fonts; }
        QCOMPARE(qgetenv("DESKTOP_STARTUP_ID"), QByteArray("desk_TIME42"));
    }

    void withoutAStartupIdNoneIsMade() {
        qunsetenv("DESKTOP_STARTUP_ID");
        { const FontsAhead fonts; }
        QVERIFY(!qEnvironmentVariableIsSet("DESKTOP_STARTUP_ID"));
    }
};

int main(int argc, char** argv) {
    return runTest<TestFontsAhead>(argc, argv);
}

#include "test_fonts_ahead.moc"
