#pragma once

#include "InstrumentSession.h"

#include <QHostAddress>
#include <QList>
#include <QTcpServer>
#include <QTimer>

#include <map>
#include <string>
#include <vector>

/// What the instruments of a SimulatorServer are like.
struct SimulatorSettings {
    /// How each starts; an empty name becomes "Unit 1", "Unit 2" ... by the connection's number,
    /// and each seed differs by that number.
    InstrumentSettings instrument{.name = {}};
    /// Updates a second of pages that live; 0 sends updates only when something was received.
    double updatesPerSecond = 4;
    /// What is wrong with every connection: names out of faultKinds().
    std::vector<std::string> faults;
    /// More connections at once than this, or than the system has files for, are closed as they
    /// arrive.
    int mostConnections = 500;
};

/// Simulated instruments on a TCP port: every connection is an instrument of its own, numbered
/// from 1 in the order of arrival.
///
/// Used by gx7100sim and, in one process, by tests. Everything happens on the thread that owns it.
class SimulatorServer : public QObject {
    Q_OBJECT

public:
    explicit SimulatorServer(SimulatorSettings settings, QObject* parent = nullptr);
    ~SimulatorServer() override;

    /// Listens on one address, or with QHostAddress::Any on all of IPv4 and IPv6; port 0 takes
    /// any free one. False on failure: errorString() tells why.
    bool listen(const QHostAddress& address, quint16 port);

    QString errorString() const { return m_server.errorString(); }
    QHostAddress address() const { return m_server.serverAddress(); }
    quint16 port() const { return m_server.serverPort(); }

    /// Stops listening and breaks every connection off. listen() may follow.
    void stop();

    /// The numbers of the open connections, in ascending order.
    QList<int> connections() const;
    int connectionCount() const { return static_cast<int>(m_sessions.size()); }

    /// The key codes that an open connection has received (the last 4096), in order.
    QList<quint16> keys(int connection) const;

    /// What the instrument of an open connection shows; an empty screen for any other.
    InstrumentScreen screen(int connection) const;

    /// Bytes that wait because the operator of an open connection does not take them.
    qint64 backlog(int connection) const;

    /// Breaks one connection off, as if its instrument were switched off.
    void drop(int connection);

    /// Sends text as a "CHAT" packet to one operator.
    void sendChat(int connection, const QByteArray& text);

    /// Lets time go by for every instrument; the server's own timer does this too, unless the
    /// rate is 0.
    void tick(std::chrono::milliseconds elapsed);

signals:
    void connected(int connection, const QString& peer);
    void disconnected(int connection);
    void keyReceived(int connection, quint16 code);
    /// Any packet received: 4 bytes, type, body.
    void packetReceived(int connection, const QByteArray& packet);

private:
    void acceptPending();
    void open(QTcpSocket* socket);
    void forget(int connection);
    InstrumentSession* find(int connection) const;

    SimulatorSettings m_settings;
    QTcpServer m_server;
    QTimer m_timer;
    std::map<int, InstrumentSession*> m_sessions;
    int m_lastNumber = 0;
};
