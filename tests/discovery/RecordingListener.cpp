#include "RecordingListener.h"

namespace {

QString joined(const std::string& name, const std::string& regtype, const std::string& domain) {
    return QString::fromStdString(name + ' ' + regtype + ' ' + domain);
}

} // namespace

void RecordingListener::write(const QString& line) {
    m_lines += line;
    // A copy: what is called may destroy or replace the original.
    if (const auto action = during)
        action();
}

void RecordingListener::AddService(std::string name, std::string regtype, std::string domain,
                                   unsigned int interfaceIndex, std::string hostTarget,
                                   const SocketAddress& address,
                                   const std::map<std::string, std::string>& txt) {
    QStringList keys;
    for (const auto& [key, value] : txt)
        keys += QString::fromStdString(key + ": " + value);
    write(
        QStringLiteral("add %1 if %2 %3 %4 port %5 scope %6 {%7}")
            .arg(joined(name, regtype, domain))
            .arg(interfaceIndex)
            .arg(QString::fromStdString(hostTarget), QString::fromStdString(address.Presentation()))
            .arg(address.Port())
            .arg(address.Scope())
            .arg(keys.join(QStringLiteral(", "))));
}

void RecordingListener::RemoveService(std::string name, std::string regtype, std::string domain) {
    write(QStringLiteral("remove ") + joined(name, regtype, domain));
}

void RecordingListener::ServiceRegistered(std::string name, std::string regtype,
                                          std::string domain) {
    write(QStringLiteral("registered ") + joined(name, regtype, domain));
}

bool RecordingListener::ServiceError(std::string message) {
    write(QStringLiteral("error ") + QString::fromStdString(message));
    return isToThrow;
}
