#pragma once

#include "Loopback.h"

#include <QByteArray>
#include <QTcpServer>
#include <QTcpSocket>

/// The other end of the wire as bytes: takes connections on an address of its own, keeps what
/// arrives on the latest and sends what the test says.
class RawInstrument : public QObject {
    Q_OBJECT

public:
    RawInstrument() {
        connect(&m_server, &QTcpServer::newConnection, this, &RawInstrument::accept);
        m_address = loopback::listenSomewhere([this](const QHostAddress& address) {
            return m_server.listen(address, loopback::instrumentPort);
        });
    }

    QString address() const { return m_address.toString(); }
    int connectionsMade() const { return m_connectionsMade; }
    bool isConnected() const {
        return m_socket && m_socket->state() == QAbstractSocket::ConnectedState;
    }
    const QByteArray& received() const { return m_received; }
    void clear() { m_received.clear(); }

    void send(const QByteArray& bytes) {
        m_socket->write(bytes);
        m_socket->flush();
    }
    void drop() { m_socket->disconnectFromHost(); }
    void reset() { m_socket->abort(); }
    void stopListening() { m_server.close(); }

private:
    void accept() {
        m_socket = m_server.nextPendingConnection();
        m_received.clear();
        ++m_connectionsMade;
        connect(m_socket, &QTcpSocket::readyRead, this,
                [this, socket = m_socket] { m_received += socket->readAll(); });
    }

    QTcpServer m_server;
    QHostAddress m_address;
    QTcpSocket* m_socket = nullptr;
    QByteArray m_received;
    int m_connectionsMade = 0;
};
