#pragma once

#include "BonjourClientListener.h"

#include <list>
#include <memory>

/// A listener that keeps what it is told, for a program that only wants to look services up.
class BonjourResolver : public BonjourClientListener {
public:
    /// One report of a service; the fields are those of AddService.
    struct HostInfo {
        HostInfo(std::string serviceName, std::string serviceType, std::string serviceDomain,
                 unsigned int index, std::string target, const SocketAddress& endpoint,
                 const std::map<std::string, std::string>& keys);

        std::string name;
        std::string regtype;
        std::string domain;
        unsigned int interfaceIndex;
        std::string hostTarget;
        SocketAddress address;
        std::map<std::string, std::string> txt;
    };

    /// Appended to what is known: Lookup keeps finding the first report of a name.
    void AddService(std::string name, std::string regtype, std::string domain,
                    unsigned int interfaceIndex, std::string hostTarget,
                    const SocketAddress& address,
                    const std::map<std::string, std::string>& txt) override;
    /// Forgets the first report whose name is exactly `name`.
    void RemoveService(std::string name, std::string regtype, std::string domain) override;

    /// The first report whose name is `name` but for the case of ASCII letters, or null. Valid
    /// until it is removed.
    const HostInfo* Lookup(std::string name) const;

    /// Whether a report was ever removed.
    bool IsChanged() const { return m_changed; }

private:
    std::list<std::shared_ptr<HostInfo>> m_hosts;
    bool m_changed = false;
};
