#pragma once

#include <QFileDevice>
#include <QSerialPort>
#include <QString>

#include <chrono>

/// What the operating system knows about a serial port's device and QSerialPort does not tell.
/// Where it cannot be asked, these do nothing or believe QSerialPort.
namespace portdevice {

/// Asks the driver of an open port to hand over each byte as it comes. The latency timer of a USB
/// adapter is 16 ms by default, which a transfer that waits for a reply to each block pays twice a
/// block. Drivers that do not offer it are left as they are.
void requestLowLatency(QSerialPort& port);

/// Whether an open port that reported `error` has lost its device for good (an unplugged adapter),
/// and not just failed once.
bool isLost(QSerialPort& port, QSerialPort::SerialPortError error);

/// Lets the driver of an open port send what it still holds, for at most `limit`, then discards
/// the rest: closing a port that cannot send would block for as long as the driver likes.
void drain(QSerialPort& port, std::chrono::milliseconds limit);

/// The path of the device of a port given by its name or its path.
QString path(const QString& portName);

/// Whether this user may not open the device.
bool isForbidden(const QString& device);

/// One line that names a forbidden device and its group, and tells the operator what to do.
QString permissionAdvice(const QString& device);
/// The same for a device that is known to belong to `group` and to have those permissions.
QString permissionAdvice(const QString& device, const QString& group,
                         QFileDevice::Permissions permissions);

} // namespace portdevice
