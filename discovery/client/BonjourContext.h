#pragma once

#include <map>
#include <string>

class BonjourClientImpl;

/// What one running operation knows: handed to the discovery library, which hands it back with
/// every reply. Owned by the operation's slot.
struct BonjourContext {
    explicit BonjourContext(BonjourClientImpl* owner) : impl(owner) {}
    BonjourContext(BonjourClientImpl* owner, std::string serviceName, std::string serviceType,
                   std::string serviceDomain)
        : impl(owner), name(std::move(serviceName)), regtype(std::move(serviceType)),
          domain(std::move(serviceDomain)) {}

    /// Null once the operation has ended: a reply that still comes is for nobody.
    BonjourClientImpl* impl;
    std::string name;
    std::string regtype;
    std::string domain;
    std::string hostTarget;
    /// As the resolve reply delivered it.
    unsigned int port = 0;
    std::map<std::string, std::string> txt;
};
