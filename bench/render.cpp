// How long a character screen takes to paint, beside the plain painter of the tests, which paints
// the same pixels, and beside filling an image of the same size with one colour.

#include "ReferencePainter.h"
#include "TextScreen.h"

#include <QGuiApplication>
#include <QPainter>

#include <benchmark/benchmark.h>

#include <atomic>
#include <cmath>
#include <cstdio>
#include <map>
#include <string>

namespace {

constexpr QSize sizes[] = {{240, 120}, {480, 240}, {960, 480}, {1920, 960}};
constexpr int repetitions = 5;

std::string nameOf(const QSize& size) {
    return std::to_string(size.width()) + "x" + std::to_string(size.height());
}

/// Mostly letters, as on a real screen, with lines, blocks and attributes among them.
ReferenceScreen typicalScreen() {
    ReferenceScreen screen;
    for (int i = 0; i < 320; ++i) {
        const bool border = i / 40 == 0 || i / 40 == 6;
        screen.text += static_cast<char>(border ? 205 : i % 40 == 20 ? 179 : 33 + i % 94);
        screen.attr += static_cast<char>(i / 40 == 7 ? 1 : i % 50 < 5 ? 2 : 0);
    }
    return screen;
}

void reference(benchmark::State& state, const QSize& size) {
    const ReferenceScreen screen = typicalScreen();
    const int letters = ReferencePainter::pixelSize(screen.family, size);
    for ([[maybe_unused]] const auto _ : state)
        benchmark::DoNotOptimize(ReferencePainter::paint(screen, size, letters));
}

void screen(benchmark::State& state, const QSize& size) {
    const ReferenceScreen cells = typicalScreen();
    const std::atomic<bool> never = false;
    TextScreen screen;
    screen.text = QVector<char>(cells.text.begin(), cells.text.end());
    screen.attr = QVector<char>(cells.attr.begin(), cells.attr.end());
    screen.font = QFont(cells.family);
    for ([[maybe_unused]] const auto _ : state) {
        QImage image(size, QImage::Format_RGB32);
        screen.fitFont(size);
        QPainter painter(&image);
        screen.paintText(painter, size, never);
    }
}

void fill(benchmark::State& state, const QSize& size) {
    for ([[maybe_unused]] const auto _ : state) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        benchmark::DoNotOptimize(image);
    }
}

/// Keeps the medians for the table of ratios.
class Medians : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.aggregate_name == "median")
                m_medians[run.run_name.function_name] = run.GetAdjustedRealTime();
        }
        ConsoleReporter::ReportRuns(runs);
    }

    void printRatios() const {
        std::printf("\n%-10s %12s %12s %12s %18s %14s\n", "size", "reference us", "screen us",
                    "fill us", "reference/screen", "screen/fill");
        for (const QSize& size : sizes) {
            const double plain = median("reference/" + nameOf(size));
            const double painted = median("screen/" + nameOf(size));
            const double filled = median("fill/" + nameOf(size));
            std::printf("%-10s %12.1f %12.1f %12.1f %18.2f %14.1f\n", nameOf(size).c_str(), plain,
                        painted, filled, plain / painted, painted / filled);
        }
    }

private:
    /// Not a number for what was filtered out.
    double median(const std::string& name) const {
        const auto found = m_medians.find(name);
        return found == m_medians.end() ? std::nan("") : found->second;
    }

    std::map<std::string, double> m_medians;
};

using Subject = void(benchmark::State&, const QSize&);

void add(const char* name, Subject* subject) {
    for (const QSize& size : sizes) {
        benchmark::RegisterBenchmark((std::string(name) + "/" + nameOf(size)).c_str(), subject,
                                     size)
            ->Unit(benchmark::kMicrosecond)
            ->Repetitions(repetitions)
            ->ReportAggregatesOnly();
    }
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    add("reference", reference);
    add("screen", screen);
    add("fill", fill);
    Medians medians;
    benchmark::RunSpecifiedBenchmarks(&medians);
    medians.printRatios();
    return 0;
}
