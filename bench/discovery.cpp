// How long an operator who opens the connection dialog waits for the first instrument, beside what
// the discovery service's own tool needs to resolve it, in the same run: one is measured after the
// other, again and again. Runs itself between two hosts (tools/two-hosts.sh), so it needs root.
//
// The client's own steps - browse, resolve, query - are measured without a dialog as well: the
// service's daemon holds back the first answer to a browse and to a query for 10 ms each (to let a
// program that asks get ready for it), where the tool, whose one resolve brings the address along,
// waits once. Less than that no dialog can take.

#include "BonjourBox.h"
#include "BonjourClient.h"
#include "BonjourClientListener.h"
#include "NewConnection.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QProcess>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <unistd.h>

namespace {

/// Far more than discovery ever needs: only to end a run that waits in vain.
constexpr int limit = 30000;

/// Notes that an instrument has been found.
class Finder : public BonjourClientListener {
public:
    void AddService(std::string, std::string, std::string, unsigned int, std::string,
                    const SocketAddress&, const std::map<std::string, std::string>&) override {
        m_hasFound = true;
    }
    bool hasFound() const { return m_hasFound; }

private:
    bool m_hasFound = false;
};

/// Seconds from the client's first step to the first instrument it reports.
double clientSeconds() {
    QElapsedTimer clock;
    clock.start();
    Finder finder;
    BonjourClient client(&finder);
    client.Browse("_gx7100._tcp");
    while (!finder.hasFound() && clock.elapsed() < limit)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

/// Seconds from opening the dialog to the first instrument on its list.
double dialogSeconds() {
    QElapsedTimer clock;
    clock.start();
    NewConnection dialog;
    dialog.show();
    const auto* box = dialog.findChild<BonjourBox*>("etherList");
    while (box->findText("unit3") < 0 && clock.elapsed() < limit)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents);
    return static_cast<double>(clock.nsecsElapsed()) / 1e9;
}

/// Seconds from starting the tool to its first resolved instrument.
double toolSeconds() {
    QElapsedTimer clock;
    clock.start();
    QProcess tool;
    tool.start("avahi-browse", {"-r", "-p", "_gx7100._tcp"});
    bool isResolved = false;
    while (!isResolved && (tool.canReadLine() || tool.waitForReadyRead(limit)))
        isResolved = tool.readLine().startsWith("=;");
    const double seconds = static_cast<double>(clock.nsecsElapsed()) / 1e9;
    tool.terminate();
    tool.waitForFinished(limit);
    return seconds;
}

void besideTheTool(benchmark::State& state, double (*measured)()) {
    double own = 0;
    double tool = 0;
    while (state.KeepRunning()) {
        const double seconds = measured();
        state.SetIterationTime(seconds);
        own += seconds;
        tool += toolSeconds();
    }
    state.counters["tool_ms"] = 1000 * tool / static_cast<double>(state.iterations());
    state.counters["ratio"] = own / tool;
}
BENCHMARK_CAPTURE(besideTheTool, listedByTheDialog, dialogSeconds)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);
BENCHMARK_CAPTURE(besideTheTool, reportedByTheClient, clientSeconds)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Iterations(20);

/// An instrument on the other host; false when it does not get announced.
bool announce(QProcess& simulator) {
    QStringList command = qEnvironmentVariable("GX_OTHER_HOST").split(' ');
    command += {GX_SIMULATOR, "--announce", "unit3"};
    simulator.start(command.takeFirst(), command);
    while (simulator.canReadLine() || simulator.waitForReadyRead(limit)) {
        if (simulator.readLine().startsWith("Announced: unit3"))
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("GX_OTHER_HOST")) {
        std::vector<char*> command{const_cast<char*>(GX_TWO_HOSTS)};
        command.insert(command.end(), argv, argv + argc);
        command.push_back(nullptr);
        ::execv(GX_TWO_HOSTS, command.data());
        std::perror(GX_TWO_HOSTS);
        return 1;
    }
    const QApplication application(argc, argv);
    QProcess simulator;
    if (!announce(simulator)) {
        std::fputs("no instrument was announced\n", stderr);
        return 1;
    }
    toolSeconds(); // and it is known on this host
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    simulator.terminate();
    simulator.waitForFinished(limit);
    return 0;
}
