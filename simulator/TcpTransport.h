#pragma once

#include "Fault.h"
#include "FrameReader.h"
#include "PacketTransport.h"

#include <QTcpSocket>

/// Packets in frames over one TCP connection.
///
/// What a peer can make it hold is bounded: frames that are too long end the connection, and while
/// the peer does not take what it is sent, nothing more is read from it.
class TcpTransport : public PacketTransport {
    Q_OBJECT

public:
    /// Takes over a connected socket.
    TcpTransport(QTcpSocket* socket, FaultChain faults, QObject* parent = nullptr);

    void send(const std::string& packet) override;
    qint64 backlog() const override { return m_socket->bytesToWrite(); }
    void close() override;
    QString peerText() const override;

private:
    void readAvailable();
    void reset();
    void reportClosed();

    QTcpSocket* m_socket;
    FrameReader m_reader;
    FaultChain m_faults;
    QString m_peerText;
    bool m_silent = false;
    bool m_closed = false;
};
