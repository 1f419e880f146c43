#pragma once

#include <QByteArray>
#include <QHostAddress>
#include <QTcpSocket>

/// Milliseconds to wait for what must come; only a failure waits that long.
inline constexpr int patience = 60000;

/// The bytes of one text update: a frame around a "BNDL" packet of the items T, A and R.
inline constexpr qsizetype textUpdateSize = 7 + 8 + (5 + 320) + (5 + 320) + (5 + 3);

/// The same for graphics: the item G alone.
inline constexpr qsizetype graphicsUpdateSize = 7 + 8 + (5 + 1920);

/// Somebody who watches an instrument: a bare socket that collects what arrives.
class Peer {
public:
    explicit Peer(quint16 port, const QHostAddress& address = QHostAddress::LocalHost);

    QTcpSocket& socket() { return m_socket; }

    void send(const QByteArray& bytes) { m_socket.write(bytes); }

    /// Takes the next `size` bytes, waiting for them; fewer only when they do not come.
    QByteArray take(qsizetype size);

    /// Leaves what arrives in the system's buffers, which are made small for it.
    void stopReading();
    void resumeReading() { m_socket.setReadBufferSize(0); }

    /// Waits until the other end has ended the connection; what it sent before stays to be taken.
    bool waitForEnd();

    /// What has arrived and was not taken.
    QByteArray rest();

private:
    QTcpSocket m_socket;
    QByteArray m_received;
};
