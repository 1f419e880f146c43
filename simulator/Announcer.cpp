#include "Announcer.h"

void Announcer::announce(const QString& name, quint16 port) {
    m_client.Register(name.toStdString(), "_gx7100._tcp", "local.", port, {{"model", "GX-7100"}});
}

void Announcer::ServiceRegistered(std::string name, std::string, std::string) {
    emit announced(QString::fromStdString(name));
}

bool Announcer::ServiceError(std::string message) {
    emit failed(QString::fromStdString(message));
    return false;
}
