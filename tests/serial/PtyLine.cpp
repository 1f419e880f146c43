#include "PtyLine.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <stdexcept>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

PtyLine::PtyLine() {
    m_master = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    std::array<char, 64> name{};
    if (m_master < 0 || grantpt(m_master) != 0 || unlockpt(m_master) != 0 ||
        ptsname_r(m_master, name.data(), name.size()) != 0)
        throw std::runtime_error("no pseudo terminal");
    m_portName = m_folder.filePath(QStringLiteral("port"));
    // Another user may look for the port.
    if (chmod(qPrintable(m_folder.path()), 0711) != 0 ||
        symlink(name.data(), qPrintable(m_portName)) != 0)
        throw std::runtime_error("no name for a pseudo terminal");
    // Held open so that the line outlives a port that is closed and opened again.
    m_slave = open(name.data(), O_RDWR | O_NOCTTY | O_CLOEXEC);
    termios settings{};
    tcgetattr(m_slave, &settings);
    cfmakeraw(&settings);
    tcsetattr(m_slave, TCSANOW, &settings);
    m_notifier = std::make_unique<QSocketNotifier>(m_master, QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &PtyLine::readAll);
}

PtyLine::~PtyLine() {
    unplug();
}

void PtyLine::write(const QByteArray& bytes) {
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t count =
            ::write(m_master, bytes.data() + done, static_cast<std::size_t>(bytes.size() - done));
        if (count > 0) {
            done += count;
        } else if (errno == EAGAIN) {
            pollfd room{m_master, POLLOUT, 0};
            poll(&room, 1, -1);
        } else {
            throw std::runtime_error("pseudo terminal: write failed");
        }
    }
}

void PtyLine::unplug() {
    m_notifier.reset();
    for (int* descriptor : {&m_master, &m_slave}) {
        if (*descriptor >= 0)
            close(*descriptor);
        *descriptor = -1;
    }
}

void PtyLine::readAll() {
    std::array<char, 4096> bytes{};
    const ssize_t count = read(m_master, bytes.data(), bytes.size());
    if (count <= 0)
        return;
    m_received.append(bytes.data(), count);
    emit arrived();
}
