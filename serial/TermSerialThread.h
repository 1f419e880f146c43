#pragma once

#include "LTermBuffer.h"
#include "SerialTimings.h"
#include "ThreadExit.h"
#include "XferHost.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QMutex>
#include <QSerialPort>
#include <QThread>
#include <QTimer>

#include <atomic>
#include <deque>
#include <memory>
#include <string>

/// The worker of a serial link: owns the port, takes what arrives apart, writes what is queued, one
/// string a pass, and carries out file transfers.
///
/// It sleeps until bytes arrive, something is queued or the wake-up timer fires. The object lives
/// on the GUI thread; run() and the operations of XferHost are the worker's. Results leave through
/// the signals only, which are to be queued. finished() is emitted when the port has been closed,
/// because shutDown() was called or because the device is gone.
class TermSerialThread : public QThread, public XferHost {
    Q_OBJECT

public:
    /// Opens the port, given by its name or its device's path; IsOpen() tells whether that worked.
    TermSerialThread(const QString& portName, QObject* parent, SerialTimings timings = {});
    /// Shuts down and waits for the end of the worker.
    ~TermSerialThread() override;

    /// Whether the port is open and the worker is meant to run. Any thread.
    bool IsOpen() const { return m_running; }

    /// Asks the worker to end; finished() tells when it has. Any thread.
    void shutDown();
    /// Queues bytes to be written to the port as they stand. Any thread.
    void external_send(const std::string& bytes);
    /// Queues a file that is sent once the instrument asks for it. Any thread.
    void addPacket(const std::string& file);
    /// Forgets the queued files that the instrument has not asked for. Any thread.
    void withdrawFiles();
    /// Aborts a file transfer; all that is queued for output gives way to `packet`. Any thread.
    void stopXfer(const std::string& packet);

    int GetChar(long timeoutMs) override;
    int SendChar(short c, long timeoutMs) override;
    int SendString(const std::string& bytes) override;
    void ReportError(const std::string& text) override;
    void ReportProgress(int block, int count) override;

    /// Called by the receiver of a queued signal before it looks at the arguments. Qt's event queue
    /// orders these by itself, but is not built with the thread sanitizer, which sees the locks of
    /// this program only.
    void awaitHandover();

public slots:
    /// Ends the worker's sleep, also one that it has yet to begin. The worker's own.
    void jjj();

signals:
    /// One packet of the serial line.
    void signalFromSerial(char type, std::string payload);
    /// The end of a file transfer from the instrument: its result and what was received.
    void FxMessage(int status, QByteArray data);
    /// A file transfer began (1, bytes to send or 1000), went on (2, bytes of this block) or ended
    /// (0, result).
    void xferProgress(int status, int value);

protected:
    void run() override;

private:
    void openPort(const QString& portName);
    void portFailed(QSerialPort::SerialPortError error);
    void sendNow(const std::string& bytes);
    void SendPacket(char type, const std::string& payload);

    void wake();
    void setServing(bool serving);
    void serviceComm(bool mayWait);
    void readPortData();
    void serviceFX();
    void serviceOutgoing();
    void receiveFile();
    void sendNextFile();
    bool mayTransfer() const { return m_running && !m_abort; }

    std::unique_ptr<QSerialPort> m_port;
    QMutex m_mutex;
    LTermBuffer m_parser;
    std::unique_ptr<QTimer> m_timer;
    QElapsedTimer m_clock;
    std::atomic<bool> m_running = false;
    std::deque<QByteArray> m_files;
    std::deque<std::string> m_outgoing;
    std::atomic<bool> m_abort = false;
    bool m_serving = false;
    QMutex m_handover;
    const SerialTimings m_timings;
    ThreadExit m_exit;
};
