#include "PtyPort.h"

#include <QScopeGuard>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace {

/// The system does not tell when a program opens the other end; it has to be asked.
constexpr std::chrono::milliseconds watchPeriod(20);

constexpr std::size_t chunk = 4096;

/// No translation of line ends, no echo, and a first close, without which the system does not tell
/// that nobody has it open.
bool prepareOtherEnd(const char* name) {
    const int descriptor = open(name, O_RDWR | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const auto closeIt = qScopeGuard([descriptor] { close(descriptor); });
    termios settings{};
    if (tcgetattr(descriptor, &settings) != 0)
        return false;
    cfmakeraw(&settings);
    return tcsetattr(descriptor, TCSANOW, &settings) == 0;
}

} // namespace

PtyPort::PtyPort(QObject* parent) : QObject(parent) {
    m_watch.setInterval(watchPeriod);
    connect(&m_watch, &QTimer::timeout, this, &PtyPort::lookWhetherOpen);
}

PtyPort::~PtyPort() {
    m_readable.reset();
    m_writable.reset();
    if (m_master >= 0)
        close(m_master);
}

bool PtyPort::create() {
    std::array<char, 64> name{};
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0 ||
        ptsname_r(m_master, name.data(), name.size()) != 0 || !prepareOtherEnd(name.data())) {
        m_errorString = qt_error_string(errno);
        return false;
    }
    m_name = QString::fromLocal8Bit(name.data());
    m_readable = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Read);
    m_writable = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Write);
    m_readable->setEnabled(false);
    m_writable->setEnabled(false);
    connect(m_readable.get(), &QSocketNotifier::activated, this, &PtyPort::readAvailable);
    connect(m_writable.get(), &QSocketNotifier::activated, this, &PtyPort::writeAvailable);
    m_watch.start();
    return true;
}

void PtyPort::lookWhetherOpen() {
    pollfd query{m_master, 0, 0};
    poll(&query, 1, 0);
    const bool hungUp = (query.revents & POLLHUP) != 0;
    // What a program sent before it closed is still to be read; reading tells when that is done.
    if (!hungUp)
        setOpen(true);
    else if (m_open)
        readAvailable();
}

void PtyPort::setOpen(bool open) {
    if (open == m_open)
        return;
    m_open = open;
    m_readable->setEnabled(open);
    if (!open) {
        m_writable->setEnabled(false);
        m_unwritten.clear();
    }
    emit(open ? opened() : closed());
}

void PtyPort::readAvailable() {
    std::array<char, chunk> bytes{};
    const ssize_t count = read(m_master, bytes.data(), bytes.size());
    if (count > 0)
        emit received(QByteArray(bytes.data(), count));
    else if (count < 0 && errno == EIO)
        setOpen(false);
}

void PtyPort::write(const std::string& bytes) {
    if (!m_open)
        return;
    m_unwritten.append(bytes.data(), static_cast<qsizetype>(bytes.size()));
    if (!m_writable->isEnabled())
        writeAvailable();
}

void PtyPort::writeAvailable() {
    const ssize_t count =
        ::write(m_master, m_unwritten.constData(), static_cast<std::size_t>(m_unwritten.size()));
    if (count > 0)
        m_unwritten.remove(0, count);
    m_writable->setEnabled(!m_unwritten.isEmpty());
    if (count > 0 && m_unwritten.isEmpty())
        emit drained();
}
