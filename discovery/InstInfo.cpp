#include "BonjourBox.h"

#include <algorithm>

BonjourBox::InstInfo::InstInfo(std::string instrumentName, std::string hostTarget,
                               const SocketAddress& address, std::string instrumentKind,
                               const std::map<std::string, std::string>& keys)
    : name(std::move(instrumentName)), addresses{address}, host(std::move(hostTarget)),
      kind(std::move(instrumentKind)), txt(keys) {}

bool BonjourBox::InstInfo::operator<(const InstInfo& other) const {
    return QString::fromLatin1(name).compare(QString::fromLatin1(other.name), Qt::CaseInsensitive) <
           0;
}

std::string BonjourBox::InstInfo::SelectIPAddress(bool preferIPv6, int* scope, int* port) const {
    // IPv4 sorts before IPv6.
    const auto firstIPv6 =
        std::find_if(addresses.begin(), addresses.end(), [](const SocketAddress& each) {
            return each._SockLen() == sizeof(sockaddr_in6);
        });
    const bool takeIPv6 =
        firstIPv6 != addresses.end() && (preferIPv6 || firstIPv6 == addresses.begin());
    const auto chosen = takeIPv6 ? firstIPv6 : addresses.begin();
    const bool isAny = chosen != addresses.end();
    if (scope != nullptr)
        *scope = isAny ? static_cast<int>(chosen->Scope()) : 0;
    if (port != nullptr)
        *port = isAny ? chosen->Port() : 0;
    return isAny ? chosen->Presentation() : std::string();
}

std::string BonjourBox::InstInfo::SelectIPAddress(bool preferIPv6) const {
    return SelectIPAddress(preferIPv6, nullptr, nullptr);
}
