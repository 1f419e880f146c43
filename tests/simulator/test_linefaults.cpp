// What can be wrong with a line, and how fast it is.

#include "LineFaults.h"
#include "LineNoise.h"
#include "PacedQueue.h"
#include "TestEnvironment.h"

class TestLineFaults : public QObject {
    Q_OBJECT

private slots:
    void wishes_data();
    void wishes();
    void everyKindIsDescribed();
    void aGoodLineChangesNothing();
    void eachNoiseDoesItsOwn();
    void theSameSeedMeetsTheSameFate();
    void stallsAddUp();
    void bytesTakeTheirTime();
    void pausesAreNotSaved();
    void aStallShiftsWhatIsDue();
    void aLineThatTakesNoTime();
};

namespace {

using Clock = PacedQueue::Clock;
using std::chrono::microseconds;
using std::chrono::milliseconds;

std::string text(int size) {
    std::string result;
    for (int i = 0; i < size; ++i)
        result += static_cast<char>(i);
    return result;
}

} // namespace

void TestLineFaults::wishes_data() {
    QTest::addColumn<QByteArray>("wish");
    QTest::addColumn<bool>("sound");
    const auto row = [](const char* wish, bool sound) {
        QTest::newRow(wish) << QByteArray(wish) << sound;
    };
    row("bit-errors=0", true);
    row("bit-errors=0.001", true);
    row("bit-errors=1", true);
    row("bit-errors=1.1", false);
    row("bit-errors=-1", false);
    row("bit-errors=nan", false);
    row("bit-errors=1x", false);
    row("bit-errors=", false);
    row("bit-errors", false);
    row("drops=0.5", true);
    row("duplicates=0.5", true);
    row("stalls=0.5", true);
    row("wrong-number=1", true);
    row("wrong-number=65535", true);
    row("wrong-number=0", false);
    row("wrong-number=65536", false);
    row("abort=3", true);
    row("abort=", false);
    row("reply=3@2", true);
    row("reply=0@1", true);
    row("reply=255@1x6", true);
    row("reply=256@1", false);
    row("reply=1@0", false);
    row("reply=1@1x0", false);
    row("reply=1@", false);
    row("reply=@1", false);
    row("reply=1", false);
    row("never-answers", true);
    row("never-answers=1", false);
    row("no-such-fault", false);
    row("", false);
    row("=", false);
}

void TestLineFaults::wishes() {
    QFETCH(const QByteArray, wish);
    QFETCH(const bool, sound);
    LineFaults faults;
    faults.abortAt = 9;
    QCOMPARE(addLineFault(faults, wish.toStdString()), sound);
    if (!sound) {
        QCOMPARE(faults.abortAt, 9);
        QCOMPARE(faults.replyTimes, 1);
        QVERIFY(!faults.neverAnswers);
    }
}

void TestLineFaults::everyKindIsDescribed() {
    LineFaults faults;
    for (const LineFaultKind& kind : lineFaultKinds())
        QVERIFY(!QByteArray(kind.description).isEmpty());
    QVERIFY(addLineFault(faults, "reply=3@2x6"));
    QCOMPARE(faults.reply, 3);
    QCOMPARE(faults.replyAt, 2);
    QCOMPARE(faults.replyTimes, 6);
    QVERIFY(addLineFault(faults, "drops=0.25"));
    QCOMPARE(faults.drops, 0.25);
    QCOMPARE(faults.duplicates, 0.0);
    QCOMPARE(faults.reply, 3);
}

void TestLineFaults::aGoodLineChangesNothing() {
    LineNoise noise({}, 1);
    const std::string bytes = text(5000);
    QCOMPARE(noise.pass(bytes), bytes);
    QCOMPARE(noise.takeStall().count(), 0);
}

void TestLineFaults::eachNoiseDoesItsOwn() {
    const std::string bytes = text(256);
    LineFaults faults;
    faults.drops = 1;
    QCOMPARE(LineNoise(faults, 1).pass(bytes), std::string());

    faults = {};
    faults.duplicates = 1;
    QCOMPARE(LineNoise(faults, 1).pass("abc"), std::string("aabbcc"));

    faults = {};
    faults.bitErrors = 1;
    const std::string damaged = LineNoise(faults, 1).pass(bytes);
    QCOMPARE(damaged.size(), bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        const auto change = static_cast<unsigned char>(damaged[i] ^ bytes[i]);
        QCOMPARE(qPopulationCount(change), 1U);
    }
}

void TestLineFaults::theSameSeedMeetsTheSameFate() {
    LineFaults faults;
    faults.bitErrors = faults.drops = faults.duplicates = faults.stalls = 0.05;
    const std::string bytes = text(3000);
    const std::string once = LineNoise(faults, 5).pass(bytes);
    QVERIFY(once != bytes);
    QVERIFY(LineNoise(faults, 6).pass(bytes) != once);
    LineNoise inPieces(faults, 5);
    std::string again;
    for (std::size_t at = 0; at < bytes.size(); at += 7)
        again += inPieces.pass(std::string_view(bytes).substr(at, 7));
    QCOMPARE(again, once);
}

void TestLineFaults::stallsAddUp() {
    LineFaults faults;
    faults.stalls = 1;
    faults.stall = milliseconds(20);
    LineNoise noise(faults, 1);
    QCOMPARE(noise.pass("abc"), std::string("abc"));
    QCOMPARE(noise.takeStall(), milliseconds(60));
    QCOMPARE(noise.takeStall(), milliseconds(0));
}

void TestLineFaults::bytesTakeTheirTime() {
    // 11 bits a byte: 1000 bytes a second, 1 ms each.
    PacedQueue line(11000);
    const Clock::time_point start = Clock::time_point() + std::chrono::hours(1);
    QVERIFY(!line.nextDue());
    line.push("abcdef", start);
    QCOMPARE(*line.nextDue(), start + milliseconds(1));
    QCOMPARE(line.pop(start), std::string());
    QCOMPARE(line.pop(start + microseconds(999)), std::string());
    QCOMPARE(line.pop(start + microseconds(1000)), std::string("a"));
    QCOMPARE(line.pop(start + microseconds(3999)), std::string("bc"));
    QCOMPARE(line.size(), std::size_t{3});
    QCOMPARE(*line.nextDue(), start + milliseconds(4));
    QCOMPARE(line.pop(start + milliseconds(100)), std::string("def"));
    QVERIFY(!line.nextDue());

    // The instrument's line carries 5236 bytes a second.
    PacedQueue real(57600);
    real.push(std::string(10000, 'x'), start);
    QCOMPARE(real.pop(start + std::chrono::seconds(1)).size(), std::size_t{5236});
}

void TestLineFaults::pausesAreNotSaved() {
    PacedQueue line(11000);
    const Clock::time_point start = Clock::time_point() + std::chrono::hours(1);
    line.push("a", start);
    QCOMPARE(line.pop(start + milliseconds(1)), std::string("a"));
    line.push("b", start + milliseconds(500));
    QCOMPARE(line.pop(start + milliseconds(500)), std::string());
    QCOMPARE(line.pop(start + milliseconds(501)), std::string("b"));
    // A byte that comes while the last one is still on its way waits for it.
    line.push("c", start + milliseconds(600));
    line.push("d", start + microseconds(600500));
    QCOMPARE(line.pop(start + milliseconds(601)), std::string("c"));
    QCOMPARE(line.pop(start + milliseconds(602)), std::string("d"));
}

void TestLineFaults::aStallShiftsWhatIsDue() {
    PacedQueue line(11000);
    const Clock::time_point start = Clock::time_point() + std::chrono::hours(1);
    line.push("ab", start);
    QCOMPARE(line.pop(start + milliseconds(1)), std::string("a"));
    line.stall(milliseconds(50));
    QCOMPARE(line.pop(start + milliseconds(51)), std::string());
    QCOMPARE(line.pop(start + milliseconds(52)), std::string("b"));
    line.push("c", start + milliseconds(52));
    line.clear();
    QCOMPARE(line.pop(start + std::chrono::hours(1)), std::string());
}

void TestLineFaults::aLineThatTakesNoTime() {
    PacedQueue line(0);
    const Clock::time_point start = Clock::time_point() + std::chrono::hours(1);
    line.push("abc", start);
    QCOMPARE(*line.nextDue(), start);
    QCOMPARE(line.pop(start), std::string("abc"));
    line.stall(milliseconds(5));
    line.push("d", start);
    QCOMPARE(line.pop(start), std::string());
    QCOMPARE(line.pop(start + milliseconds(5)), std::string("d"));
}

int main(int argc, char** argv) {
    return runTest<TestLineFaults>(argc, argv);
}

#include "test_linefaults.moc"
