#include "TerminationSignals.h"

#ifdef Q_OS_WIN
#include <windows.h>
#else
#include <QSocketNotifier>

#include <array>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {

#ifdef Q_OS_WIN

TerminationSignals* receiver = nullptr;

// Windows calls this on a thread of its own.
BOOL WINAPI onConsoleEvent(DWORD) {
    if (receiver)
        QMetaObject::invokeMethod(receiver, &TerminationSignals::terminationRequested,
                                  Qt::QueuedConnection);
    return TRUE;
}

#else

// A signal handler may do next to nothing; writing to a pipe that the event loop watches is safe.
std::array<int, 2> wakePipe{-1, -1};

void onSignal(int) {
    const char byte = 0;
    // A full pipe has woken the loop already.
    [[maybe_unused]] const ssize_t written = ::write(wakePipe[1], &byte, 1);
}

#endif

} // namespace

#ifdef Q_OS_WIN

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    receiver = this;
    SetConsoleCtrlHandler(onConsoleEvent, TRUE);
}

TerminationSignals::~TerminationSignals() {
    SetConsoleCtrlHandler(onConsoleEvent, FALSE);
    receiver = nullptr;
}

#else

TerminationSignals::TerminationSignals(QObject* parent) : QObject(parent) {
    if (::pipe(wakePipe.data()) != 0)
        return;
    for (const int end : wakePipe)
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    auto* notifier = new QSocketNotifier(wakePipe[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        char byte = 0;
        while (::read(wakePipe[0], &byte, 1) > 0) {
        }
        emit terminationRequested();
    });
    std::signal(SIGINT, onSignal);
    std::signal(SIGTERM, onSignal);
}

TerminationSignals::~TerminationSignals() {
    std::signal(SIGINT, SIG_DFL);
    std::signal(SIGTERM, SIG_DFL);
    for (int& end : wakePipe) {
        ::close(end);
        end = -1;
    }
}

#endif
