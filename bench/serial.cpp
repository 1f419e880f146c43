// What a file transfer makes of the line: bytes of the file a second, as a share of the 5236 bytes
// that 57600 baud carry, in both directions, and beside it the two protocols that everybody has, on
// the same line in the same run. And how long a key takes from the tile to the wire when the worker
// has nothing to do.

#include "ConnectGX7100Serial.h"
#include "PacedLine.h"
#include "SerialSimulator.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

namespace {

/// Only to end a run that waits in vain.
constexpr int limit = 120000;

constexpr double lineBytesPerSecond = 57600.0 / PacedQueue::bitsPerByte;
constexpr int fileSize = 40 * 1020;

/// Every byte value, and nothing that a packer could make smaller.
QByteArray contents() {
    QByteArray bytes(fileSize, '\0');
    std::uint32_t state = 1;
    for (char& byte : bytes) {
        state = state * 1664525U + 1013904223U;
        byte = static_cast<char>(state >> 24U);
    }
    return bytes;
}

template <typename Condition>
bool spinUntil(Condition condition) {
    QElapsedTimer clock;
    clock.start();
    while (!condition() && clock.elapsed() < limit)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return condition();
}

void report(benchmark::State& state, double seconds) {
    state.SetIterationTime(seconds);
    state.counters["share"] = fileSize / seconds / lineBytesPerSecond;
}

/// From the moment the transfer begins, as the tile is told, to the moment it has ended.
void transferFile(benchmark::State& state, bool toInstrument) {
    SerialSimulatorSettings settings;
    settings.updatesPerSecond = 0;
    settings.line.baud = PacedLine::baud;
    SerialSimulator simulator(settings);
    simulator.start();
    ConnectGX7100Serial link(nullptr);
    const QByteArray file = contents();
    bool identical = false;
    QElapsedTimer clock;
    double seconds = 0;
    QObject::connect(&link, &ConnectGX7100::fxstatus, &link, [&](int status, int) {
        if (status == 1)
            clock.start();
        else if (status == 0)
            seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    });
    QObject::connect(&link, &ConnectGX7100::signalFrom, &link, [&](const std::string& packet) {
        identical = identical || packet.ends_with(file.toStdString());
    });
    QObject::connect(&simulator, &SerialSimulator::fileReceived, &link,
                     [&](const QByteArray& received) { identical = received == file; });
    bool open = false;
    QObject::connect(&simulator, &SerialSimulator::connected, &link, [&] { open = true; });
    link.Connect(simulator.portName());
    spinUntil([&] { return open; });

    while (state.KeepRunning()) {
        identical = false;
        seconds = 0;
        if (toInstrument)
            link.slotTo(ConnectGX7100::sendBackChannel("CATCH", "") + file.toStdString());
        else
            simulator.sendFile(file);
        if (!spinUntil([&] { return identical && seconds > 0; }))
            state.SkipWithError("the file has not arrived");
        report(state, seconds);
    }
}
BENCHMARK_CAPTURE(transferFile, to_instrument, true)->UseManualTime()->Iterations(1);
BENCHMARK_CAPTURE(transferFile, from_instrument, false)->UseManualTime()->Iterations(1);

/// Two programs, one at each end of the line, from their start to their end.
void transferWith(benchmark::State& state, const QString& sender, const QString& receiver) {
    const QTemporaryDir folder;
    const QByteArray file = contents();
    QFile source(folder.filePath("source"));
    if (!source.open(QIODevice::WriteOnly) || source.write(file) != fileSize)
        state.SkipWithError("no file to send");
    source.close();

    while (state.KeepRunning()) {
        PacedLine line;
        line.create();
        spinUntil([&line] { return line.isReady(); });
        const QString received = folder.filePath("received");
        QFile::remove(received);
        QElapsedTimer clock;
        clock.start();
        std::array<QProcess, 2> programs;
        for (std::size_t end = 0; end < programs.size(); ++end) {
            programs[end].setWorkingDirectory(folder.path());
            programs[end].start("/bin/sh",
                                {"-c", end == 0 ? sender : receiver, "sh", line.portName(end)});
        }
        spinUntil([&] {
            return std::ranges::all_of(programs, [](const QProcess& program) {
                return program.state() == QProcess::NotRunning;
            });
        });
        const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
        QFile copy(received);
        if (!copy.open(QIODevice::ReadOnly) || copy.readAll() != file)
            state.SkipWithError("the file has not arrived");
        report(state, seconds);
        for (QProcess& program : programs) {
            program.kill();
            program.waitForFinished(limit);
        }
    }
}
BENCHMARK_CAPTURE(transferWith, zmodem, QStringLiteral("exec sz -b -q source <$1 >$1"),
                  QStringLiteral("mkdir -p in && cd in && rm -f source && rz -b -q -y <$1 >$1 && "
                                 "mv source ../received"))
    ->UseManualTime()
    ->Iterations(1);
BENCHMARK_CAPTURE(
    transferWith, kermit,
    QStringLiteral(
        "exec kermit -Y -q -C \"set carrier-watch off, set line $1, set "
        "flow none, fast, set prefixing minimal, set file type binary, send source, exit\""),
    QStringLiteral(
        "exec kermit -Y -q -C \"set carrier-watch off, set line $1, set "
        "flow none, fast, set prefixing minimal, set file type binary, receive received, exit\""))
    ->UseManualTime()
    ->Iterations(1);

/// From slotTo() to the byte at the other end of the line, with a worker that has been asleep.
void keyToWire(benchmark::State& state) {
    PtyPort port;
    port.create();
    ConnectGX7100Serial link(nullptr);
    link.Connect(port.name());
    bool open = false;
    int arrived = 0;
    QObject::connect(&port, &PtyPort::opened, &link, [&] { open = true; });
    QObject::connect(&port, &PtyPort::received, &link,
                     [&](const QByteArray& bytes) { arrived += static_cast<int>(bytes.size()); });
    spinUntil([&] { return open; });
    constexpr int keySize = 5;
    const std::string key = ConnectGX7100::sendKey('q');

    std::vector<double> milliseconds;
    while (state.KeepRunning()) {
        // Long enough to fall asleep, and never in step with the timer.
        QElapsedTimer pause;
        pause.start();
        const int length = 3 + static_cast<int>(milliseconds.size() % 17);
        spinUntil([&] { return pause.elapsed() >= length; });
        arrived = 0;
        QElapsedTimer clock;
        clock.start();
        link.slotTo(key);
        spinUntil([&] { return arrived == keySize; });
        const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
        state.SetIterationTime(seconds);
        milliseconds.push_back(seconds * 1e3);
    }
    std::ranges::sort(milliseconds);
    state.counters["median_ms"] = milliseconds[milliseconds.size() / 2];
    state.counters["p99_ms"] = milliseconds[milliseconds.size() * 99 / 100];
}
BENCHMARK(keyToWire)->UseManualTime()->Unit(benchmark::kMillisecond)->Iterations(500);

} // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    // Wakes the waits above: nothing else may happen for as long as they last.
    QTimer tick;
    tick.start(10);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
