#include "TestEnvironment.h"
#include "TurnPacer.h"
#include "TurnPacing.h"

#include <QEventLoop>
#include <QKeyEvent>
#include <QSocketNotifier>

#include <array>
#include <unistd.h>

using namespace std::chrono_literals;

namespace {

using Time = TurnPacing::Clock::time_point;

/// An event loop in which something happens every `period`: how many turns it makes in a second,
/// and how much of the second it pauses.
struct Second {
    int turns = 0;
    std::chrono::microseconds paused{0};
};

Second aSecondOf(TurnPacing& pacing, Time& now, std::chrono::microseconds period,
                 std::chrono::microseconds work) {
    Second second;
    const Time end = now + 1s;
    Time next = now;
    while (now < end) {
        now = std::max(now, next);
        pacing.turnBegins(now);
        ++second.turns;
        now += work;
        // All that happened meanwhile is done in this turn.
        while (next <= now)
            next += period;
        const auto pause = pacing.pauseAfterTurn(now);
        second.paused += pause;
        now += pause;
    }
    return second;
}

class TurnPacingTest : public QObject {
    Q_OBJECT

private slots:
    void turnsOfASecond_data() {
        QTest::addColumn<int>("period");
        QTest::addColumn<int>("work");
        QTest::addColumn<int>("turns");
        QTest::addColumn<bool>("pauses");
        QTest::newRow("idle") << 500'000 << 100 << 2 << false;
        QTest::newRow("one instrument") << 100'000 << 100 << 10 << false;
        QTest::newRow("as many turns as are free") << 5'600 << 100 << 178 << false;
        QTest::newRow("as many turns as pay") << 4'900 << 100 << 205 << true;
        QTest::newRow("64 instruments") << 1'500 << 100 << 250 << true;
        QTest::newRow("turns that take their time") << 1 << 9'000 << 111 << false;
        QTest::newRow("a flood") << 1 << 1'000 << 250 << true;
        QTest::newRow("work that takes the time itself") << 1 << 4'500 << 223 << false;
    }
    void turnsOfASecond() {
        QFETCH(const int, period);
        QFETCH(const int, work);
        QFETCH(const int, turns);
        QFETCH(const bool, pauses);
        TurnPacing pacing;
        Time now = Time() + 1h;
        aSecondOf(pacing, now, std::chrono::microseconds(period), std::chrono::microseconds(work));
        const Second second = aSecondOf(pacing, now, std::chrono::microseconds(period),
                                        std::chrono::microseconds(work));
        QCOMPARE(second.paused > 0us, pauses);
        QVERIFY2(std::abs(second.turns - turns) <= 1 + turns / 20,
                 QByteArray::number(second.turns));
    }

    void noPauseIsLongerThanTheSpacing() {
        TurnPacing pacing;
        Time now = Time() + 1h;
        for (int turn = 0; turn < 10'000; ++turn) {
            pacing.turnBegins(now);
            const auto pause = pacing.pauseAfterTurn(now);
            QVERIFY(pause >= 0us && pause <= TurnPacing::spacing);
            now += 50us;
        }
    }

    /// Pauses make turns rarer, and a sleep takes longer than it should; that does not end them.
    void staysBusyWithFewerTurns() {
        TurnPacing pacing;
        Time now = Time() + 1h;
        aSecondOf(pacing, now, 500us, 10us);
        pacing.turnBegins(now);
        for (int turn = 0; turn < 50; ++turn) {
            QVERIFY(pacing.pauseAfterTurn(now + 10us) > 0us);
            now += 8ms;
            pacing.turnBegins(now);
        }
        // Rare turns do.
        for (int turn = 0; turn < 20; ++turn) {
            now += 12ms;
            pacing.turnBegins(now);
        }
        QCOMPARE(pacing.pauseAfterTurn(now), 0us);
    }

    void noPauseWhileTheOperatorActs() {
        TurnPacing pacing;
        Time now = Time() + 1h;
        aSecondOf(pacing, now, 500us, 10us);
        pacing.turnBegins(now);
        QVERIFY(pacing.pauseAfterTurn(now) > 0us);
        pacing.operatorActs(now);
        QCOMPARE(pacing.pauseAfterTurn(now), 0us);
        const Time end = now + TurnPacing::attention;
        for (; now < end; now += 500us) {
            pacing.turnBegins(now);
            QCOMPARE(pacing.pauseAfterTurn(now), 0us);
        }
        pacing.turnBegins(now);
        QVERIFY(pacing.pauseAfterTurn(now) > 0us);
    }

    void noPauseAfterAQuietTime() {
        TurnPacing pacing;
        Time now = Time() + 1h;
        aSecondOf(pacing, now, 500us, 10us);
        now += 1s;
        QCOMPARE(pacing.pauseAfterTurn(now), 0us);
        pacing.turnBegins(now);
        QCOMPARE(pacing.pauseAfterTurn(now), 0us);
    }

    /// A busy loop sleeps between its turns, and not while the operator types.
    void theEventLoopSleeps() {
        int sleeps = 0;
        const TurnPacer pacer([&](std::chrono::microseconds length) {
            QVERIFY(length > 0us && length <= TurnPacing::spacing);
            ++sleeps;
        });
        const BusySource source;
        QTRY_VERIFY_WITH_TIMEOUT((makeTurns(source, 50), sleeps > 0), 60'000);

        QObject window;
        for (int turn = 0; turn < 200; ++turn) {
            QKeyEvent key(QEvent::KeyPress, Qt::Key_A, {});
            QCoreApplication::sendEvent(&window, &key);
            sleeps = 0;
            makeTurns(source, 1);
            QCOMPARE(sleeps, 0);
        }
    }

    void aSleepTakesItsTime() {
        const TurnPacer pacer;
        const BusySource source;
        // Without sleeps a turn takes some microseconds; with them, most of the spacing.
        bool isPaced = false;
        const auto begin = TurnPacing::Clock::now();
        while (!isPaced && TurnPacing::Clock::now() < begin + 60s)
            isPaced = timeOf(source, 50) > 50 * TurnPacing::spacing / 2;
        QVERIFY(isPaced);
    }

private:
    /// Something that always wants to be read.
    struct BusySource {
        BusySource() {
            if (pipe(ends.data()) != 0 || write(ends[1], "x", 1) != 1)
                qFatal("no pipe");
        }
        ~BusySource() {
            close(ends[0]);
            close(ends[1]);
        }
        BusySource(const BusySource&) = delete;
        BusySource& operator=(const BusySource&) = delete;
        std::array<int, 2> ends{-1, -1};
    };

    static TurnPacing::Clock::duration timeOf(const BusySource& source, int turns) {
        const auto begin = TurnPacing::Clock::now();
        makeTurns(source, turns);
        return TurnPacing::Clock::now() - begin;
    }

    static void makeTurns(const BusySource& source, int count) {
        QEventLoop loop;
        int turns = 0;
        const QSocketNotifier notifier(source.ends[0], QSocketNotifier::Read);
        connect(&notifier, &QSocketNotifier::activated, &loop, [&] {
            if (++turns == count)
                loop.quit();
        });
        loop.exec();
    }
};

} // namespace

int main(int argc, char** argv) {
    return runTest<TurnPacingTest>(argc, argv);
}

#include "test_turn_pacing.moc"
