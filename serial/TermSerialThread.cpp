#include "TermSerialThread.h"

#include "ByteArrayXfer.h"
#include "PortDevice.h"
#include "SerialPacket.h"

#include <QDataStream>
#include <QMutexLocker>

#include <cstdio>
#include <utility>

namespace {

/// Status values of xferProgress().
enum Progress { ended = 0, began = 1, went = 2 };

/// Told instead of the size of a file that is received, which nobody knows beforehand.
constexpr int unknownSize = 1000;

void printLine(const std::string& text) {
    std::puts(text.c_str());
    std::fflush(stdout);
}

} // namespace

TermSerialThread::TermSerialThread(const QString& portName, QObject* parent, SerialTimings timings)
    : QThread(parent), m_port(std::make_unique<QSerialPort>()), m_timer(std::make_unique<QTimer>()),
      m_timings(timings) {
    qRegisterMetaType<std::string>("std::string");
    openPort(portName);
    // From here on the port and the timer are the worker's alone.
    m_port->moveToThread(this);
    m_timer->moveToThread(this);
    m_clock.start();
}

TermSerialThread::~TermSerialThread() {
    shutDown();
    wait();
    m_exit.wait();
}

void TermSerialThread::openPort(const QString& portName) {
    m_port->setPortName(portName);
    m_port->setBaudRate(QSerialPort::Baud57600);
    m_port->setFlowControl(QSerialPort::NoFlowControl);
    m_port->setParity(QSerialPort::NoParity);
    m_port->setDataBits(QSerialPort::Data8);
    m_port->setStopBits(QSerialPort::TwoStop);
    m_running = m_port->open(QIODevice::ReadWrite);
    if (m_running) {
        portdevice::requestLowLatency(*m_port);
        connect(m_port.get(), &QSerialPort::readyRead, this, &TermSerialThread::jjj,
                Qt::DirectConnection);
        connect(m_port.get(), &QSerialPort::errorOccurred, this, &TermSerialThread::portFailed,
                Qt::DirectConnection);
        return;
    }
    const QString device = portdevice::path(portName);
    if (portdevice::isForbidden(device))
        printLine(portdevice::permissionAdvice(device).toLocal8Bit().toStdString());
}

void TermSerialThread::portFailed(QSerialPort::SerialPortError error) {
    if (!portdevice::isLost(*m_port, error))
        return;
    m_running = false;
    jjj();
}

void TermSerialThread::jjj() {
    quit();
}

/// Called with the mutex held. Before the worker's event loop can be woken and after it is gone
/// there is no sleep to end.
void TermSerialThread::wake() {
    if (m_serving)
        jjj();
}

void TermSerialThread::setServing(bool serving) {
    const QMutexLocker lock(&m_mutex);
    m_serving = serving;
}

void TermSerialThread::shutDown() {
    const QMutexLocker lock(&m_mutex);
    m_running = false;
    wake();
}

void TermSerialThread::external_send(const std::string& bytes) {
    const QMutexLocker lock(&m_mutex);
    m_outgoing.push_back(bytes);
    wake();
}

void TermSerialThread::addPacket(const std::string& file) {
    const QMutexLocker lock(&m_mutex);
    m_files.push_back(QByteArray::fromStdString(file));
}

void TermSerialThread::withdrawFiles() {
    const QMutexLocker lock(&m_mutex);
    m_files.clear();
}

void TermSerialThread::stopXfer(const std::string& packet) {
    printLine("stopXfer received in TermSerialThread");
    const QMutexLocker lock(&m_mutex);
    m_outgoing.clear();
    m_outgoing.push_back(packet);
    m_abort = true;
    wake();
}

void TermSerialThread::sendNow(const std::string& bytes) {
    if (!m_port->isOpen())
        return;
    QDataStream stream(m_port.get());
    stream.writeRawData(bytes.data(), static_cast<int>(bytes.size()));
    m_port->flush();
}

void TermSerialThread::SendPacket(char type, const std::string& payload) {
    sendNow(serialpacket::build(type, payload));
}

void TermSerialThread::run() {
    m_exit.enter();
    if (!m_port->isOpen())
        return;
    connect(m_timer.get(), &QTimer::timeout, this, &TermSerialThread::jjj, Qt::DirectConnection);
    m_timer->setTimerType(Qt::PreciseTimer);
    m_timer->start(m_timings.wakeUp);
    // Something may have been queued before there was a worker to wake: the first sleep ends at
    // once.
    setServing(true);
    jjj();
    while (m_running) {
        serviceComm(true);
        readPortData();
        serviceFX();
        serviceOutgoing();
    }
    setServing(false);
    m_timer->stop();
    portdevice::drain(*m_port, std::chrono::milliseconds(m_timings.wakeUp) / 2);
    m_port->close();
}

void TermSerialThread::serviceComm(bool mayWait) {
    // Moves bytes between the port object and the driver, both ways, without waiting.
    m_port->waitForReadyRead(0);
    QByteArray bytes;
    {
        const QMutexLocker lock(&m_mutex);
        bytes = m_port->readAll();
    }
    m_parser.Add(bytes.data(), static_cast<unsigned int>(bytes.size()));
    if (mayWait && bytes.isEmpty())
        exec();
}

void TermSerialThread::readPortData() {
    unsigned char type = 0;
    std::string payload;
    while (m_parser.nextItem(type, payload)) {
        const QMutexLocker lock(&m_handover);
        emit signalFromSerial(static_cast<char>(type), payload);
    }
}

void TermSerialThread::awaitHandover() {
    const QMutexLocker lock(&m_handover);
}

void TermSerialThread::serviceFX() {
    if (!m_parser.hasFX())
        return;
    m_abort = false;
    unsigned int mode = 0;
    if (m_parser.IncomingFXPacket(mode))
        receiveFile();
    else
        sendNextFile();
    if (m_abort)
        m_parser.dropFX();
    // Packets and transfer bytes may have come in meanwhile that nothing else will wake it for.
    jjj();
}

void TermSerialThread::receiveFile() {
    QByteArray data;
    emit xferProgress(began, unknownSize);
    ByteArrayXfer transfer(this, nullptr, m_timings.transfer);
    const int result = transfer.Receive(&data);
    emit xferProgress(ended, result);
    emit FxMessage(result, data);
}

void TermSerialThread::sendNextFile() {
    QByteArray file;
    {
        const QMutexLocker lock(&m_mutex);
        if (m_files.empty())
            return;
        file = std::move(m_files.front());
        m_files.pop_front();
    }
    emit xferProgress(began, static_cast<int>(file.size()));
    ByteArrayXfer transfer(this, nullptr, m_timings.transfer);
    const int result = transfer.Send(&file);
    emit xferProgress(ended, result);
}

void TermSerialThread::serviceOutgoing() {
    std::string bytes;
    {
        const QMutexLocker lock(&m_mutex);
        if (m_outgoing.empty() || !m_port->isOpen())
            return;
        bytes = std::move(m_outgoing.front());
        m_outgoing.pop_front();
        // One string a pass; the next pass is to come at once.
        if (!m_outgoing.empty())
            jjj();
    }
    sendNow(bytes);
}

int TermSerialThread::GetChar(long timeoutMs) {
    const qint64 start = m_clock.elapsed();
    for (;;) {
        if (!mayTransfer())
            return aborted;
        if (m_parser.hasFX())
            return m_parser.GetFX();
        if (m_clock.elapsed() - start > timeoutMs)
            return timedOut;
        serviceComm(true);
    }
}

int TermSerialThread::SendChar(short c, long /*timeoutMs*/) {
    return SendString(std::string(1, static_cast<char>(c)));
}

int TermSerialThread::SendString(const std::string& bytes) {
    if (!mayTransfer())
        return aborted;
    SendPacket('X', bytes);
    serviceComm(false);
    return 0;
}

void TermSerialThread::ReportError(const std::string& text) {
    printLine(text);
}

void TermSerialThread::ReportProgress(int /*block*/, int count) {
    emit xferProgress(went, count);
}
