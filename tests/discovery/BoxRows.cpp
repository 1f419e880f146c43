#include "BoxRows.h"

void found(BonjourBox& box, const std::string& name, const std::string& address,
           unsigned int scope) {
    SocketAddress endpoint(address);
    endpoint.Port(48155);
    endpoint.Scope(scope);
    box.AddService(name, "_gx7100._tcp", "local.", 3, name + "-host.local.", endpoint, {});
}

void withdrawn(BonjourBox& box, const std::string& name) {
    box.RemoveService(name, "_gx7100._tcp", "local.");
}

QStringList rowsOf(const BonjourBox& box) {
    QStringList rows;
    for (int row = 0; row < box.count(); ++row) {
        if (box.itemData(row, Qt::AccessibleDescriptionRole).toString() == "separator") {
            rows += QStringLiteral("---");
            continue;
        }
        QStringList cells{box.itemText(row)};
        for (int role = Qt::UserRole; role < Qt::UserRole + 4; ++role)
            cells += box.itemData(row, role).isValid() ? box.itemData(row, role).toString()
                                                       : QStringLiteral("invalid");
        rows += cells.join('|');
    }
    return rows;
}

QStringList textsOf(const BonjourBox& box) {
    QStringList texts;
    for (const QString& row : rowsOf(box))
        texts += row.section('|', 0, 0);
    return texts;
}

QString askedFor(BonjourBox& box) {
    std::string ip = "untouched";
    int scope = -1;
    int port = -1;
    if (!box.getIP(ip, &scope, &port))
        return ip == "untouched" && scope == -1 && port == -1 ? QStringLiteral("false")
                                                              : QStringLiteral("false, touched");
    return QStringLiteral("%1 %2 %3").arg(QString::fromStdString(ip)).arg(scope).arg(port);
}
