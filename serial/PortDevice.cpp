#include "PortDevice.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QThread>

#include <cerrno>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>
#endif
#ifdef Q_OS_LINUX
#include <linux/serial.h>
#endif

namespace portdevice {

void requestLowLatency(QSerialPort& port) {
#ifdef Q_OS_LINUX
    serial_struct settings{};
    if (ioctl(port.handle(), TIOCGSERIAL, &settings) != 0)
        return;
    settings.flags |= ASYNC_LOW_LATENCY;
    ioctl(port.handle(), TIOCSSERIAL, &settings);
#else
    Q_UNUSED(port)
#endif
}

bool isLost(QSerialPort& port, QSerialPort::SerialPortError error) {
    switch (error) {
    case QSerialPort::NoError:
    case QSerialPort::TimeoutError:
    case QSerialPort::UnsupportedOperationError:
    case QSerialPort::OpenError:
    case QSerialPort::NotOpenError:
        return false;
    default:
        break;
    }
#ifdef Q_OS_UNIX
    // A full output buffer is reported as the same error as a device that is gone.
    if (error == QSerialPort::ResourceError) {
        pollfd query{port.handle(), 0, 0};
        return poll(&query, 1, 0) > 0 && (query.revents & (POLLHUP | POLLERR | POLLNVAL)) != 0;
    }
#else
    Q_UNUSED(port)
#endif
    return true;
}

void drain(QSerialPort& port, std::chrono::milliseconds limit) {
#ifdef Q_OS_UNIX
    constexpr std::chrono::milliseconds step{5};
    int held = 0;
    for (std::chrono::milliseconds waited{0};; waited += step) {
        if (ioctl(port.handle(), TIOCOUTQ, &held) != 0 || held == 0)
            return;
        if (waited >= limit)
            break;
        QThread::msleep(static_cast<unsigned long>(step.count()));
    }
    tcflush(port.handle(), TCOFLUSH);
#else
    Q_UNUSED(port)
    Q_UNUSED(limit)
#endif
}

QString path(const QString& portName) {
    return portName.startsWith(QLatin1Char('/')) ? portName : QStringLiteral("/dev/") + portName;
}

bool isForbidden(const QString& device) {
#ifdef Q_OS_UNIX
    // No name of a port, no device: a folder that this user may not write is none.
    if (QFileInfo(device).isDir())
        return false;
    return faccessat(AT_FDCWD, QFile::encodeName(device).constData(), R_OK | W_OK, AT_EACCESS) !=
               0 &&
           errno == EACCES;
#else
    Q_UNUSED(device)
    return false;
#endif
}

QString permissionAdvice(const QString& device) {
    const QFileInfo info(device);
    return permissionAdvice(device, info.group(), info.permissions());
}

QString permissionAdvice(const QString& device, const QString& group,
                         QFileDevice::Permissions permissions) {
    constexpr QFileDevice::Permissions needed = QFileDevice::ReadGroup | QFileDevice::WriteGroup;
    const bool joiningHelps =
        (permissions & needed) == needed && !group.isEmpty() && group != QLatin1String("root");
    return (joiningHelps
                ? QCoreApplication::translate(
                      "portdevice",
                      "Cannot open %1: permission denied. The device belongs to the group %2; join "
                      "it with \"sudo usermod -aG %2 $USER\", then log out and in again.")
                : QCoreApplication::translate(
                      "portdevice",
                      "Cannot open %1: permission denied. The device belongs to the group %2; ask "
                      "the administrator for access."))
        .arg(device, group.isEmpty() ? QStringLiteral("?") : group);
}

} // namespace portdevice
