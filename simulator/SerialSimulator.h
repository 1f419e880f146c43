#pragma once

#include "InstrumentSession.h"
#include "SerialTransport.h"

#include <QByteArray>
#include <QTimer>

/// What the instrument of a SerialSimulator is like.
struct SerialSimulatorSettings {
    InstrumentSettings instrument;
    /// Updates a second of pages that live; 0 sends updates only when something was received.
    double updatesPerSecond = 4;
    SerialLineSettings line;
    /// What the instrument sends when it is asked to; the last file it received takes its place.
    QByteArray file;
};

/// A simulated instrument at the end of a serial line that exists in software only.
///
/// It sends its file when the operator's message is the word "send". Used by gx7100sim and, in one
/// process, by tests. Everything happens on the thread that owns it.
class SerialSimulator : public QObject {
    Q_OBJECT

public:
    explicit SerialSimulator(SerialSimulatorSettings settings, QObject* parent = nullptr);

    /// Creates the port. False on failure: errorString() tells why.
    bool start();
    QString errorString() const { return m_port.errorString(); }
    /// The port that programs connect to.
    QString portName() const { return m_port.name(); }

    /// The key codes received so far, the latest last.
    const std::deque<quint16>& keys() const { return m_session->keys(); }
    /// What the instrument shows.
    InstrumentScreen screen() const { return m_session->instrument().screen(); }

    /// Offers a file to the program, after a transfer that runs; of several then the last.
    void sendFile(const QByteArray& file) { m_transport->sendFile(file); }
    bool isTransferring() const { return m_transport->isTransferring(); }
    /// The person at the instrument says something to the operator.
    void sendChat(const QByteArray& text) { m_session->sendChat(text); }

signals:
    void connected();
    void disconnected();
    /// A whole file has arrived.
    void fileReceived(const QByteArray& file);
    /// A transfer, in either direction, has ended.
    void transferEnded(FileTransfer::Outcome outcome);

private:
    void receive(const QByteArray& packet);

    QByteArray m_file;
    PtyPort m_port;
    SerialTransport* m_transport;
    std::unique_ptr<InstrumentSession> m_session;
    QTimer m_timer;
};
