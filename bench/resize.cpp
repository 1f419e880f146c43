// For how long at most the thread of the windows is busy with one thing while a window full of
// screens is resized through a hundred sizes, and how long it takes until all of them are sharp.

#include "LCD7100.h"
#include "Table.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QGridLayout>

#include <algorithm>
#include <ctime>
#include <string>
#include <vector>

namespace {

constexpr int runs = 5;
constexpr int steps = 100;
constexpr int columns = 4;
constexpr int tiles = 16;
constexpr double milli = 1e3;
/// About what a display shows, and a mouse tells, in a second.
constexpr int stepMs = 8;

double seconds(clockid_t clock) {
    timespec time = {};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

/// Keeps the longest that the handling of one event took.
class WatchedApplication : public QApplication {
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override {
        if (m_depth > 0)
            return QApplication::notify(receiver, event);
        const double wall = seconds(CLOCK_MONOTONIC);
        const double processor = seconds(CLOCK_THREAD_CPUTIME_ID);
        ++m_depth;
        const bool isHandled = QApplication::notify(receiver, event);
        --m_depth;
        note(seconds(CLOCK_MONOTONIC) - wall, seconds(CLOCK_THREAD_CPUTIME_ID) - processor);
        return isHandled;
    }

    void note(double wall, double processor) {
        longest = std::max(longest, wall);
        longestBusy = std::max(longestBusy, processor);
    }

    double longest = 0;     ///< by the clock
    double longestBusy = 0; ///< of the processor

private:
    int m_depth = 0;
};

std::string textOf(int tile) {
    std::string text;
    for (int i = 0; i < 320; ++i)
        text += static_cast<char>(33 + (i * (tile + 3)) % 90);
    return text;
}

void processFor(int milliseconds) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents,
                                        static_cast<int>(milliseconds - timer.elapsed()));
}

std::vector<std::string> rowOf(WatchedApplication& application, const QSize& from, int growth) {
    QWidget window;
    auto* grid = new QGridLayout(&window);
    for (int tile = 0; tile < tiles; ++tile) {
        auto* lcd = new LCD7100(&window);
        lcd->setTextWait(textOf(tile).data());
        grid->addWidget(lcd, tile / columns, tile % columns);
    }
    window.resize(from);
    window.show();
    processFor(500);

    std::vector<double> longest;
    std::vector<double> longestBusy;
    for (int run = 0; run < runs; ++run) {
        application.longest = 0;
        application.longestBusy = 0;
        for (int step = 0; step < steps; ++step) {
            const double wall = seconds(CLOCK_MONOTONIC);
            const double processor = seconds(CLOCK_THREAD_CPUTIME_ID);
            window.resize(from + QSize(step * growth, step * growth / 2));
            application.note(seconds(CLOCK_MONOTONIC) - wall,
                             seconds(CLOCK_THREAD_CPUTIME_ID) - processor);
            processFor(stepMs);
        }
        processFor(100);
        longest.push_back(application.longest * milli);
        longestBusy.push_back(application.longestBusy * milli);
    }
    const QSize to = from + QSize((steps - 1) * growth, (steps - 1) * growth / 2);
    const auto name = [](const QSize& size) {
        return std::to_string(size.width()) + " x " + std::to_string(size.height());
    };
    return {name(from) + " to " + name(to), fixed(median(longest), 2),
            fixed(*std::ranges::max_element(longest), 2), fixed(median(longestBusy), 2),
            fixed(*std::ranges::max_element(longestBusy), 2)};
}

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    WatchedApplication application(argc, argv);
    Table table({"16 screens in a window of", "longest hold ms", "worst of all ms",
                 "of which processor ms", "worst of all ms"});
    table.add(rowOf(application, {1000, 530}, 3));
    table.add(rowOf(application, {1000, 530}, 9));
    table.print();
    return 0;
}
