#include "ConnectGX7100Serial.h"
#include "SerialSimulator.h"
#include "SpinUntil.h"
#include "TestEnvironment.h"

#include <QDeadlineTimer>
#include <QSignalSpy>

#include <list>

/// Files between the program's serial link and a simulated instrument, over a real line with the
/// real worker.
class FileEndToEndTest : public QObject {
    Q_OBJECT

private slots:
    void arrives_identical_data();
    void arrives_identical();
    void screens_keys_and_chat();
    void every_reply_of_the_instrument_data();
    void every_reply_of_the_instrument();
    void faults_of_a_sending_instrument_data();
    void faults_of_a_sending_instrument();
    void stopped_by_the_operator_data();
    void stopped_by_the_operator();
    void an_echo_through_the_instrument();
    void offered_while_another_runs_data();
    void offered_while_another_runs();
    void nothing_is_damaged_unnoticed_data();
    void nothing_is_damaged_unnoticed();
};

namespace {

constexpr int patience = 120000;
using Outcome = FileTransfer::Outcome;

/// Every byte value, and no two blocks alike.
QByteArray contents(int size) {
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i + i / 251 + i / 65536);
    return bytes;
}

SerialSimulatorSettings unpaced() {
    SerialSimulatorSettings settings;
    settings.updatesPerSecond = 0;
    settings.line.baud = 0;
    return settings;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr int slowness = 3;
#else
constexpr int slowness = 1;
#endif

/// How long both ends wait in transfers that are to fail, milliseconds: long enough for what is to
/// arrive, and for bad lines, where most waits are in vain, as short as a machine allows.
constexpr int longWait = 300;
constexpr int shortWait = 40 * slowness;

SerialSimulatorSettings waiting(int milliseconds) {
    SerialSimulatorSettings settings = unpaced();
    settings.line.timings.packet = std::chrono::milliseconds(milliseconds);
    settings.line.timings.character = std::chrono::milliseconds(milliseconds / 2);
    settings.line.faults.stall = std::chrono::milliseconds(milliseconds * 3 / 2);
    return settings;
}

SerialTimings waitingLink(int milliseconds) {
    SerialTimings timings;
    timings.wakeUp = 10;
    timings.transfer = {milliseconds, milliseconds / 2};
    return timings;
}

/// An instrument, a link to it, and what became of the files between them.
class Bench : public QObject {
public:
    explicit Bench(const SerialSimulatorSettings& settings, SerialTimings timings = {})
        : simulator(settings), link(nullptr, timings) {
        connect(&simulator, &SerialSimulator::fileReceived, this,
                [this](const QByteArray& file) { atInstrument = file; });
        connect(&simulator, &SerialSimulator::transferEnded, this,
                [this](Outcome outcome) { instrumentOutcome = outcome; });
        connect(&link, &ConnectGX7100::fxstatus, this, [this](int status, int value) {
            if (status == 1)
                programBegan = true;
            else if (status == 0)
                programOutcome = value;
        });
        connect(&link, &ConnectGX7100::signalFrom, this, [this](const std::string& packet) {
            if (packet.substr(4, 4) == "FXFR")
                atProgram = QByteArray::fromStdString(packet.substr(8));
        });
    }

    bool connectBoth() {
        if (!simulator.start())
            return false;
        link.Connect(simulator.portName());
        return link.IsOpen();
    }

    void sendToInstrument(const QByteArray& file) {
        link.slotTo(ConnectGX7100::sendBackChannel("CATCH", "") + file.toStdString());
    }
    /// The program says how it ended before it hands the file over.
    bool bothEnded() const {
        const bool handedOver = !receiving || programOutcome != 0 || atProgram.has_value();
        return programOutcome.has_value() && instrumentOutcome.has_value() && handedOver;
    }
    void receive(const QByteArray& file) {
        receiving = true;
        simulator.sendFile(file);
    }
    void forget() {
        receiving = false;
        atInstrument.reset();
        atProgram.reset();
        programOutcome.reset();
        instrumentOutcome.reset();
    }

    SerialSimulator simulator;
    ConnectGX7100Serial link;
    bool receiving = false;
    bool programBegan = false;
    std::optional<QByteArray> atInstrument;
    std::optional<QByteArray> atProgram;
    std::optional<int> programOutcome;
    std::optional<Outcome> instrumentOutcome;
};

/// One file over a bad line, whose seed decides about everything: an even one sends it to the
/// instrument.
struct NoisyRun {
    NoisyRun(int theSeed, const QByteArrayList& faults)
        : seed(theSeed), file(contents(sizes[static_cast<std::size_t>(seed / 2) % sizes.size()])),
          bench(settings(seed, faults), waitingLink(shortWait)) {}

    bool start() {
        if (!bench.connectBoth())
            return false;
        if (seed % 2 == 0)
            bench.sendToInstrument(file);
        else
            bench.receive(file);
        return true;
    }
    /// Whether nothing more will come. What has not begun after so long never will: the
    /// announcement, or every request, was lost. What has begun ends, whatever happens to it.
    bool isOver() const {
        const bool runs = bench.programBegan && !bench.programOutcome;
        return bench.bothEnded() || (!runs && longEnough.hasExpired());
    }
    bool bothEndsReportSuccess() const {
        return bench.programOutcome == 0 && bench.instrumentOutcome == Outcome::Done;
    }
    bool isIdentical() const {
        return (seed % 2 == 0 ? bench.atInstrument : bench.atProgram) == file;
    }

    static SerialSimulatorSettings settings(int seed, const QByteArrayList& faults) {
        SerialSimulatorSettings result = waiting(shortWait);
        result.line.seed = static_cast<std::uint32_t>(seed * 2 + 1);
        for (const QByteArray& fault : faults)
            addLineFault(result.line.faults, fault.toStdString());
        const bool worst = faults.size() > 1;
        if (worst)
            addLineFault(result.line.faults,
                         moods[static_cast<std::size_t>(seed / 10) % moods.size()]);
        return result;
    }

    /// What the instrument itself may do on the worst of lines.
    static constexpr std::array<std::string_view, 10> moods{
        "",          "wrong-number=2", "reply=1@1x5", "reply=1@2x6", "reply=2@1",
        "reply=3@2", "reply=3@1x6",    "reply=4@1",   "reply=77@1",  "abort=2"};
    static constexpr std::array<int, 5> sizes{0, 1, 1020, 1021, 5000};
    QDeadlineTimer longEnough{75 * shortWait};
    int seed;
    QByteArray file;
    Bench bench;
};

} // namespace

void FileEndToEndTest::arrives_identical_data() {
    QTest::addColumn<int>("size");
    for (const int size : {0, 1, 1019, 1020, 1021, 2040, 100000, 1048576})
        QTest::addRow("%d", size) << size;
}

void FileEndToEndTest::arrives_identical() {
    QFETCH(const int, size);
    const QByteArray file = contents(size);

    Bench bench(unpaced());
    QVERIFY(bench.connectBoth());
    bench.sendToInstrument(file);
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    QCOMPARE(bench.programOutcome, 0);
    QCOMPARE(bench.instrumentOutcome, Outcome::Done);
    QVERIFY(bench.atInstrument == file);
    QVERIFY(!bench.atProgram);

    bench.forget();
    bench.receive(file);
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    QCOMPARE(bench.programOutcome, 0);
    QCOMPARE(bench.instrumentOutcome, Outcome::Done);
    QVERIFY(bench.atProgram == file);
    QVERIFY(!bench.atInstrument);
}

void FileEndToEndTest::screens_keys_and_chat() {
    SerialSimulatorSettings settings = unpaced();
    settings.instrument.page = PageId::Entry;
    settings.instrument.name = "North";
    Bench bench(settings);
    QSignalSpy packet(&bench.link, &ConnectGX7100::signalFrom);
    const auto last = [&packet] {
        return packet.isEmpty() ? std::string() : packet.last().first().value<std::string>();
    };
    QVERIFY(bench.connectBoth());
    QTRY_COMPARE_WITH_TIMEOUT(last(), bench.simulator.screen().updatePacket(), patience);

    bench.link.slotTo(ConnectGX7100::sendKey('q'));
    QTRY_COMPARE_WITH_TIMEOUT(bench.simulator.keys(), std::deque<quint16>{'q'}, patience);
    QTRY_COMPARE_WITH_TIMEOUT(last(), bench.simulator.screen().updatePacket(), patience);
    QVERIFY(bench.simulator.screen().rowText(3).find('q') != std::string::npos);

    bench.link.slotTo(ConnectGX7100::sendChat(QStringLiteral("hello")));
    QTRY_COMPARE_WITH_TIMEOUT(last(), std::string("\0\0\0\0CHATNorth: hello", 20), patience);

    // Gone and back again: the screen comes of itself.
    QSignalSpy disconnected(&bench.simulator, &SerialSimulator::disconnected);
    // A link that has not yet said so still has its worker, and connects to nothing.
    QSignalSpy ended(&bench.link, &ConnectGX7100::disconnected);
    bench.link.Disconnect();
    QTRY_COMPARE_WITH_TIMEOUT(disconnected.size(), 1, patience);
    QTRY_COMPARE_WITH_TIMEOUT(ended.size(), 1, patience);
    packet.clear();
    bench.link.Connect(bench.simulator.portName());
    QTRY_COMPARE_WITH_TIMEOUT(last(), bench.simulator.screen().updatePacket(), patience);
}

void FileEndToEndTest::every_reply_of_the_instrument_data() {
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<int>("programOutcome");
    QTest::addColumn<std::optional<Outcome>>("instrumentOutcome");

    using Ends = std::optional<Outcome>;
    QTest::newRow("1 once") << QByteArray("reply=1@2") << 0 << Ends(Outcome::Done);
    QTest::newRow("1 five times") << QByteArray("reply=1@2x5") << 0 << Ends(Outcome::Done);
    QTest::newRow("1 six times") << QByteArray("reply=1@2x6") << -4 << Ends(Outcome::TooNoisy);
    QTest::newRow("2") << QByteArray("reply=2@2") << -3 << Ends(Outcome::Aborted);
    QTest::newRow("3 once") << QByteArray("reply=3@2") << 0 << Ends(Outcome::Done);
    // The program believes that all went well; only the instrument knows better.
    QTest::newRow("3 six times") << QByteArray("reply=3@2x6") << 0 << Ends(Outcome::TooNoisy);
    QTest::newRow("4") << QByteArray("reply=4@2") << -5 << Ends(Outcome::OutOfSequence);
    QTest::newRow("5") << QByteArray("reply=5@2") << -1 << Ends(Outcome::TimedOut);
    QTest::newRow("255") << QByteArray("reply=255@3") << -1 << Ends(Outcome::TimedOut);
    QTest::newRow("abort at the first block")
        << QByteArray("abort=1") << -3 << Ends(Outcome::Aborted);
    QTest::newRow("abort at the last block")
        << QByteArray("abort=3") << -3 << Ends(Outcome::Aborted);
}

void FileEndToEndTest::every_reply_of_the_instrument() {
    QFETCH(const QByteArray, fault);
    QFETCH(const int, programOutcome);
    QFETCH(const std::optional<Outcome>, instrumentOutcome);

    SerialSimulatorSettings settings = waiting(longWait);
    QVERIFY(addLineFault(settings.line.faults, fault.toStdString()));
    Bench bench(settings, waitingLink(longWait));
    QVERIFY(bench.connectBoth());
    const QByteArray file = contents(2000);
    bench.sendToInstrument(file);
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    QCOMPARE(bench.programOutcome, programOutcome);
    QCOMPARE(bench.instrumentOutcome, instrumentOutcome);
    QCOMPARE(bench.atInstrument.has_value(), instrumentOutcome == Outcome::Done);
    QVERIFY(!bench.atInstrument || bench.atInstrument == file);
}

void FileEndToEndTest::faults_of_a_sending_instrument_data() {
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<int>("programOutcome");
    QTest::addColumn<std::optional<Outcome>>("instrumentOutcome");

    using Ends = std::optional<Outcome>;
    QTest::newRow("wrong number") << QByteArray("wrong-number=2") << -5
                                  << Ends(Outcome::OutOfSequence);
    QTest::newRow("abort") << QByteArray("abort=2") << -1 << Ends(Outcome::Aborted);
    QTest::newRow("never answers") << QByteArray("never-answers") << -1 << Ends(Outcome::TimedOut);
}

void FileEndToEndTest::faults_of_a_sending_instrument() {
    QFETCH(const QByteArray, fault);
    QFETCH(const int, programOutcome);
    QFETCH(const std::optional<Outcome>, instrumentOutcome);

    SerialSimulatorSettings settings = waiting(longWait);
    QVERIFY(addLineFault(settings.line.faults, fault.toStdString()));
    Bench bench(settings, waitingLink(longWait));
    QVERIFY(bench.connectBoth());
    bench.receive(contents(2000));
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    QCOMPARE(bench.programOutcome, programOutcome);
    QCOMPARE(bench.instrumentOutcome, instrumentOutcome);
    QVERIFY(!bench.atProgram);
}

void FileEndToEndTest::stopped_by_the_operator_data() {
    QTest::addColumn<bool>("sending");
    QTest::newRow("to the instrument") << true;
    QTest::newRow("from the instrument") << false;
}

void FileEndToEndTest::stopped_by_the_operator() {
    QFETCH(const bool, sending);

    // Slow enough to be stopped in the middle.
    SerialSimulatorSettings settings = unpaced();
    settings.line.baud = 115200;
    Bench bench(settings);
    QSignalSpy status(&bench.link, &ConnectGX7100::fxstatus);
    QVERIFY(bench.connectBoth());
    if (sending)
        bench.sendToInstrument(contents(100000));
    else
        bench.receive(contents(100000));
    QVERIFY(spinUntil([&] { return status.size() >= 3; }, patience));
    bench.link.stopXfer();
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    QCOMPARE(bench.programOutcome, sending ? -2 : -3);
    QCOMPARE(bench.instrumentOutcome, Outcome::AbortedByPeer);
    QVERIFY(!bench.atInstrument && !bench.atProgram);

    // The next one finds both ends ready.
    bench.forget();
    const QByteArray file = contents(3000);
    bench.receive(file);
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    QVERIFY(bench.atProgram == file);
}

void FileEndToEndTest::offered_while_another_runs_data() {
    QTest::addColumn<bool>("sending");
    QTest::newRow("to the instrument") << true;
    QTest::newRow("from the instrument") << false;
}

void FileEndToEndTest::offered_while_another_runs() {
    QFETCH(const bool, sending);

    Bench bench(unpaced());
    QVERIFY(bench.connectBoth());
    const QByteArray first = contents(100000);
    if (sending)
        bench.sendToInstrument(first);
    else
        bench.receive(first);
    // The simulator runs in this thread: the transfer cannot have ended before the offer.
    QVERIFY(spinUntil([&] { return bench.simulator.isTransferring(); }, patience));
    const QByteArray second = contents(3000);
    bench.receive(second);
    QVERIFY(spinUntil([&] { return bench.atProgram == second; }, patience));
    QVERIFY(!sending || bench.atInstrument == first);
}

void FileEndToEndTest::nothing_is_damaged_unnoticed_data() {
    QTest::addColumn<QByteArrayList>("faults");
    QTest::addColumn<int>("runs");

    QTest::newRow("bit errors") << QByteArrayList{"bit-errors=0.001"} << 600;
    QTest::newRow("dropped bytes") << QByteArrayList{"drops=0.0003"} << 400;
    QTest::newRow("bytes that come twice") << QByteArrayList{"duplicates=0.0003"} << 400;
    QTest::newRow("stalls") << QByteArrayList{"stalls=0.0002"} << 200;
    QTest::newRow("everything at once") << QByteArrayList{"bit-errors=0.0001", "drops=0.0001",
                                                          "duplicates=0.0001", "stalls=0.00005"}
                                        << 500;
}

/// However bad the line, a file arrives as it was or one end at least knows that it has not. What
/// the block protocol cannot notice, six short blocks, no line brings about by chance.
void FileEndToEndTest::nothing_is_damaged_unnoticed() {
    QFETCH(const QByteArrayList, faults);
    QFETCH(const int, runs);
    constexpr std::size_t atOnce = 40;

    int identical = 0;
    int failed = 0;
    int neverBegan = 0;
    int seed = 0;
    std::list<NoisyRun> running;
    while (seed < runs || !running.empty()) {
        while (running.size() < atOnce && seed < runs)
            QVERIFY(running.emplace_back(seed++, faults).start());
        const auto isOver = [](const NoisyRun& run) { return run.isOver(); };
        QVERIFY(spinUntil([&] { return std::ranges::any_of(running, isOver); }, patience));
        for (auto run = running.begin(); run != running.end();) {
            if (!run->isOver()) {
                ++run;
                continue;
            }
            const bool success = run->bothEndsReportSuccess();
            QVERIFY2(!success || run->isIdentical(), qPrintable(QString::number(run->seed)));
            neverBegan += run->bench.bothEnded() ? 0 : 1;
            ++(success ? identical : failed);
            run = running.erase(run);
        }
    }
    qInfo("%d arrived, %d were known to have failed, %d of which never began at one end", identical,
          failed, neverBegan);
    QVERIFY(identical > 0);
    QVERIFY(failed > 0);
}

void FileEndToEndTest::an_echo_through_the_instrument() {
    Bench bench(unpaced());
    QVERIFY(bench.connectBoth());
    const QByteArray file = contents(5000);
    bench.sendToInstrument(file);
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    bench.forget();
    bench.receiving = true;
    bench.link.slotTo(ConnectGX7100::sendChat(QStringLiteral("send")));
    QVERIFY(spinUntil([&] { return bench.bothEnded(); }, patience));
    QVERIFY(bench.atProgram == file);
}

int main(int argc, char** argv) {
    return runTest<FileEndToEndTest>(argc, argv);
}

#include "FileEndToEndTest.moc"
