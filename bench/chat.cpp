// What one more chat line costs, from its arrival until it is on the screen, by the number of lines
// that are there before it. "ratio" is the cost beside that of line 10: a long transcript must not
// slow the program down. The lines after 6000 are among those with which the oldest go.

#include "ChatWindow.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QSettings>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <map>
#include <memory>

namespace {

/// Lines timed together: one alone is over too soon.
constexpr int together = 10;

QString line(int number) {
    return QStringLiteral("Tank %1 is at 3.2 m, pump 2 has been off since noon").arg(number);
}

/// Seconds that each of a few lines takes after the first `before`.
double cost(int before) {
    const QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("settings")), QSettings::IniFormat);
    ChatWindow chat(&settings, nullptr);
    chat.show();
    for (int i = 0; i < before; ++i)
        chat.incoming(line(i));
    QCoreApplication::processEvents();
    QElapsedTimer clock;
    clock.start();
    for (int i = 0; i < together; ++i) {
        chat.incoming(line(before + i));
        QCoreApplication::processEvents();
    }
    return static_cast<double>(clock.nsecsElapsed()) * 1e-9 / together;
}

void chatLine(benchmark::State& state) {
    const auto before = static_cast<int>(state.range(0));
    double sum = 0;
    double sumAtTen = 0;
    for ([[maybe_unused]] const auto _ : state) {
        const double seconds = cost(before);
        state.SetIterationTime(seconds);
        sum += seconds;
        sumAtTen += cost(10);
    }
    state.counters["ratio"] = sum / sumAtTen;
}

BENCHMARK(chatLine)
    ->Arg(10)
    ->Arg(100)
    ->Arg(1000)
    ->Arg(4900)
    ->Arg(6000)
    ->Iterations(20)
    ->UseManualTime()
    ->Unit(benchmark::kMicrosecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
