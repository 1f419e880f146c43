#pragma once

#include <QObject>

#include <string>

/// Carries instrument packets between one simulated instrument and whoever watches it. What lies
/// below (a socket, a serial line) is the subclass's business, and so are its framing and faults.
///
/// An InstrumentSession owns it; one thread.
class PacketTransport : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Sends a packet, or queues it; once closed it is dropped.
    virtual void send(const std::string& packet) = 0;

    /// Bytes that are queued because the peer does not take them.
    virtual qint64 backlog() const = 0;

    /// Backlog in bytes above which screen updates wait.
    virtual qint64 updateLimit() const { return qint64{64} * 1024; }

    /// Breaks the connection off at once; closed() follows, if it had not been emitted before.
    virtual void close() = 0;

    /// Who is at the other end, to be shown.
    virtual QString peerText() const = 0;

signals:
    void packetReceived(const std::string& packet);
    /// Some of the backlog has gone.
    void drained();
    /// The connection is gone; emitted once.
    void closed();
};
