#pragma once

#include "BonjourClient.h"
#include "BonjourClientListener.h"

#include <QObject>

/// Announces simulated instruments on the local network, as real ones announce themselves, until
/// it is destroyed. Needs an event loop.
class Announcer : public QObject, private BonjourClientListener {
    Q_OBJECT

public:
    Announcer() : m_client(this) {}

    /// Announces an instrument with the name `name` on `port` of this host.
    void announce(const QString& name, quint16 port);

signals:
    /// An instrument is announced, under `name`, which is another one when that asked for was
    /// taken.
    void announced(const QString& name);
    /// Something cannot be announced, and why.
    void failed(const QString& message);

private:
    void ServiceRegistered(std::string name, std::string regtype, std::string domain) override;
    bool ServiceError(std::string message) override;

    BonjourClient m_client;
};
