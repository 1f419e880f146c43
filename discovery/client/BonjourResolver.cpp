#include "BonjourResolver.h"

#include <algorithm>

namespace {

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool equalWithoutCase(const std::string& left, const std::string& right) {
    return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                      [](char a, char b) { return lower(a) == lower(b); });
}

} // namespace

BonjourResolver::HostInfo::HostInfo(std::string serviceName, std::string serviceType,
                                    std::string serviceDomain, unsigned int index,
                                    std::string target, const SocketAddress& endpoint,
                                    const std::map<std::string, std::string>& keys)
    : name(std::move(serviceName)), regtype(std::move(serviceType)),
      domain(std::move(serviceDomain)), interfaceIndex(index), hostTarget(std::move(target)),
      address(endpoint), txt(keys) {}

void BonjourResolver::AddService(std::string name, std::string regtype, std::string domain,
                                 unsigned int interfaceIndex, std::string hostTarget,
                                 const SocketAddress& address,
                                 const std::map<std::string, std::string>& txt) {
    m_hosts.push_back(std::make_shared<HostInfo>(std::move(name), std::move(regtype),
                                                 std::move(domain), interfaceIndex,
                                                 std::move(hostTarget), address, txt));
}

void BonjourResolver::RemoveService(std::string name, std::string, std::string) {
    const auto host = std::find_if(m_hosts.begin(), m_hosts.end(),
                                   [&name](const auto& each) { return each->name == name; });
    if (host == m_hosts.end())
        return;
    m_hosts.erase(host);
    m_changed = true;
}

const BonjourResolver::HostInfo* BonjourResolver::Lookup(std::string name) const {
    const auto host = std::find_if(m_hosts.begin(), m_hosts.end(), [&name](const auto& each) {
        return equalWithoutCase(each->name, name);
    });
    return host == m_hosts.end() ? nullptr : host->get();
}
