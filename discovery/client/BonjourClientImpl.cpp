#include "BonjourClientImpl.h"

#include "BonjourClient.h"
#include "BonjourClientListener.h"
#include "DnsSdLibrary.h"
#include "TxtRecord.h"

#include <arpa/inet.h>
#include <array>
#include <cstring>
#include <sstream>

namespace {

constexpr uint16_t addressType = 1;
constexpr uint16_t ipv6AddressType = 28;
constexpr uint16_t internetClass = 1;

/// The library passes null where a failed operation has no text to give.
std::string text(const char* given) {
    return given == nullptr ? std::string() : std::string(given);
}

/// The address in an A or AAAA record; throws nothing. Null for other records and short data.
std::unique_ptr<SocketAddress> addressIn(uint16_t rrtype, uint16_t rdlen, const void* rdata) {
    if (rdata == nullptr)
        return nullptr;
    if (rrtype == addressType && rdlen >= sizeof(in_addr)) {
        in_addr address;
        std::memcpy(&address, rdata, sizeof address);
        return std::make_unique<SocketAddress>(address);
    }
    if (rrtype == ipv6AddressType && rdlen >= sizeof(in6_addr)) {
        in6_addr address;
        std::memcpy(&address, rdata, sizeof address);
        return std::make_unique<SocketAddress>(address);
    }
    return nullptr;
}

} // namespace

std::map<int, std::string> BonjourClientImpl::_error_map;

BonjourClientImpl::BonjourClientImpl(BonjourClientListener* listener)
    : m_listener(listener), m_window(this) {
    prepareDnsSdLibrary();
    if (_error_map.empty()) {
        _error_map = {{0, "Success"},
                      {-65537, "Unknown Error"},
                      {-65538, "No Such Name"},
                      {-65539, "Out Of Memory"},
                      {-65540, "Bad Parameter"},
                      {-65541, "Bad Reference"},
                      {-65542, "Bad State"},
                      {-65543, "Bad Flags"},
                      {-65544, "Unsupported"},
                      {-65545, "Not Initialized"},
                      {-65547, "Already Registered"},
                      {-65548, "Name Conflict"},
                      {-65549, "Invalid"},
                      {-65550, "Firewall"},
                      {-65551, "Incompatible"},
                      {-65552, "Bad Interface Index"},
                      {-65553, "Refused"},
                      {-65554, "No Such Record"},
                      {-65555, "No Authorization"},
                      {-65556, "No Such Key"},
                      {-65557, "NAT Traversal"},
                      {-65558, "Double NAT"},
                      {-65559, "Bad Time"}};
    }
}

DNSServiceErrorType BonjourClientImpl::start(int slot, const std::shared_ptr<_Context>& context,
                                             const StartFunction& startFunction) {
    DNSServiceRef* const ref = m_window.GetDNSServiceRef(slot);
    const DNSServiceErrorType code = startFunction(ref, context.get());
    if (code != kDNSServiceErr_NoError) {
        // What a failed start leaves there is not a reference.
        *ref = nullptr;
        return code;
    }
    m_window.HoldContext(slot, context);
    m_window.SelectDNSServiceRef(slot);
    return code;
}

void BonjourClientImpl::Browse(std::string regtype) {
    const std::string failure = "Unable to browse for service: " + regtype;
    const int slot = m_window.GetFreeDNSServiceRef();
    if (slot < 0) {
        _Error(failure + ": Out of resources", true);
        return;
    }
    const DNSServiceErrorType code = start(
        slot, std::make_shared<_Context>(this), [&regtype](DNSServiceRef* ref, void* context) {
            return DNSServiceBrowse(ref, 0, 0, regtype.c_str(), nullptr, _BrowseCallbackStub,
                                    context);
        });
    if (code != kDNSServiceErr_NoError)
        _Error(failure, code, true);
}

void BonjourClientImpl::Register(std::string name, std::string regtype, std::string domain,
                                 int port, const std::map<std::string, std::string>& txt) {
    const std::string failure = "Unable to register service: " + name;
    const int slot = m_window.GetFreeDNSServiceRef();
    if (slot < 0) {
        _Error(failure + ": Out of resources", true);
        return;
    }
    const std::string record = txtrecord::build(txt);
    const DNSServiceErrorType code =
        start(slot, std::make_shared<_Context>(this, name, regtype, domain),
              [&](DNSServiceRef* ref, void* context) {
                  return DNSServiceRegister(
                      ref, 0, 0, name.c_str(), regtype.c_str(), domain.c_str(), nullptr,
                      htons(static_cast<uint16_t>(port)), static_cast<uint16_t>(record.size()),
                      record.data(), _RegisterCallbackStub, context);
              });
    if (code != kDNSServiceErr_NoError)
        _Error(failure, code, true);
}

void BonjourClientImpl::Confirm(std::string name, std::string ip) {
    const std::string failure = "Unable to confirm: " + name;
    std::istringstream input(ip);
    std::array<int, 4> numbers{};
    char separator = 0;
    input >> numbers[0] >> separator >> numbers[1] >> separator >> numbers[2] >> separator >>
        numbers[3];
    if (!input) {
        _Error(failure + ": Invalid IP address: " + ip, true);
        return;
    }
    std::array<unsigned char, 4> address{};
    for (std::size_t i = 0; i < address.size(); ++i)
        address[i] = static_cast<unsigned char>(numbers[i]);
    const DNSServiceErrorType code = DNSServiceReconfirmRecord(
        0, 0, name.c_str(), addressType, internetClass, address.size(), address.data());
    if (code != kDNSServiceErr_NoError)
        _Error(failure, code, true);
}

void BonjourClientImpl::Process(DNSServiceRef ref) {
    const std::weak_ptr<const bool> life = m_life;
    // A reply may free the slot, and the library may deliver another one before it returns.
    const std::shared_ptr<_Context> context = m_window.FindContext(ref);
    const DNSServiceErrorType code = DNSServiceProcessResult(ref);
    if (code == kDNSServiceErr_NoError || life.expired())
        return;
    // A reply that freed the slot also ended the reference, and another operation may have got
    // one that looks the same.
    if (m_window.FindContext(ref) == context)
        m_window.FreeDNSServiceRef(ref);
    _Error("Unable to process result", code, false);
}

void BonjourClientImpl::_Error(std::string message, bool throwIt) {
    if (m_listener == nullptr)
        return;
    const bool isToThrow = m_listener->ServiceError(message);
    if (isToThrow && throwIt)
        throw BonjourClient::Error(message);
}

void BonjourClientImpl::_Error(std::string message, int code, bool throwIt) {
    const auto known = _error_map.find(code);
    if (code != kDNSServiceErr_NoError && known != _error_map.end())
        message += ": " + known->second;
    _Error(std::move(message), throwIt);
}

void BonjourClientImpl::_BrowseCallback(DNSServiceRef, DNSServiceFlags flags,
                                        DNSServiceErrorType errorCode, uint32_t interfaceIndex,
                                        const char* serviceName, const char* regtype,
                                        const char* replyDomain) {
    if (errorCode != kDNSServiceErr_NoError)
        _Error("Error browsing", errorCode, false);
    else if ((flags & kDNSServiceFlagsAdd) != 0)
        startResolve(interfaceIndex, text(serviceName), text(regtype), text(replyDomain));
    else if (m_listener != nullptr)
        m_listener->RemoveService(text(serviceName), text(regtype), text(replyDomain));
}

void BonjourClientImpl::startResolve(uint32_t interfaceIndex, const std::string& name,
                                     const std::string& regtype, const std::string& domain) {
    const int slot = m_window.GetFreeDNSServiceRef();
    if (slot < 0) {
        _Error("Error browsing: Out of resources", false);
        return;
    }
    start(slot, std::make_shared<_Context>(this, name, regtype, domain),
          [&](DNSServiceRef* ref, void* context) {
              return DNSServiceResolve(ref, 0, interfaceIndex, name.c_str(), regtype.c_str(),
                                       domain.c_str(), _ResolveCallbackStub, context);
          });
}

void BonjourClientImpl::_ResolveCallback(DNSServiceRef ref, DNSServiceFlags flags,
                                         DNSServiceErrorType errorCode, uint32_t interfaceIndex,
                                         const char*, const char* hostTarget, uint16_t port,
                                         uint16_t txtLen, const unsigned char* txtRecord,
                                         _Context& context) {
    if (errorCode != kDNSServiceErr_NoError) {
        m_window.FreeDNSServiceRef(ref);
        _Error("Error resolving", errorCode, false);
        return;
    }
    _Context resolved(context);
    resolved.hostTarget = text(hostTarget);
    resolved.port = port;
    if (txtRecord != nullptr)
        resolved.txt = txtrecord::parse({txtRecord, txtLen});

    const std::weak_ptr<const bool> life = m_life;
    for (const uint16_t rrtype : {addressType, ipv6AddressType}) {
        const DNSServiceErrorType code = startQuery(interfaceIndex, rrtype, resolved);
        if (code != kDNSServiceErr_NoError)
            _Error("Error resolving", code, false);
        if (life.expired())
            return;
    }
    if ((flags & kDNSServiceFlagsMoreComing) == 0)
        m_window.FreeDNSServiceRef(ref);
}

DNSServiceErrorType BonjourClientImpl::startQuery(uint32_t interfaceIndex, uint16_t rrtype,
                                                  const _Context& resolved) {
    const int slot = m_window.GetFreeDNSServiceRef();
    if (slot < 0)
        return kDNSServiceErr_NoError;
    return start(
        slot, std::make_shared<_Context>(resolved), [&](DNSServiceRef* ref, void* context) {
            return DNSServiceQueryRecord(ref, 0, interfaceIndex, resolved.hostTarget.c_str(),
                                         rrtype, internetClass, _QueryCallbackStub, context);
        });
}

void BonjourClientImpl::_QueryCallback(DNSServiceRef ref, DNSServiceFlags flags,
                                       uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                       const char*, uint16_t rrtype, uint16_t, uint16_t rdlen,
                                       const void* rdata, uint32_t, _Context& context) {
    if (errorCode != kDNSServiceErr_NoError) {
        m_window.FreeDNSServiceRef(ref);
        _Error("Error querying", errorCode, false);
        return;
    }
    const std::weak_ptr<const bool> life = m_life;
    if (const auto address = addressIn(rrtype, rdlen, rdata); address && m_listener != nullptr) {
        // The port is in network byte order already; storing it converts once more. Deliberate.
        address->Port(static_cast<int>(context.port));
        address->Scope(interfaceIndex);
        m_listener->AddService(context.name, context.regtype, context.domain, interfaceIndex,
                               context.hostTarget, *address, context.txt);
    }
    if (!life.expired() && (flags & kDNSServiceFlagsMoreComing) == 0)
        m_window.FreeDNSServiceRef(ref);
}

void BonjourClientImpl::_RegisterCallback(DNSServiceRef ref, DNSServiceFlags,
                                          DNSServiceErrorType errorCode, const char* name,
                                          const char* regtype, const char* domain) {
    if (errorCode != kDNSServiceErr_NoError) {
        m_window.FreeDNSServiceRef(ref);
        _Error("Error registering", errorCode, false);
        return;
    }
    if (m_listener != nullptr)
        m_listener->ServiceRegistered(text(name), text(regtype), text(domain));
}

void BonjourClientImpl::_BrowseCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                            uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                            const char* serviceName, const char* regtype,
                                            const char* replyDomain, void* context) {
    auto* const own = static_cast<_Context*>(context);
    if (own != nullptr && own->impl != nullptr)
        own->impl->_BrowseCallback(ref, flags, errorCode, interfaceIndex, serviceName, regtype,
                                   replyDomain);
}

void BonjourClientImpl::_ResolveCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                             uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                             const char* fullName, const char* hostTarget,
                                             uint16_t port, uint16_t txtLen,
                                             const unsigned char* txtRecord, void* context) {
    auto* const own = static_cast<_Context*>(context);
    if (own != nullptr && own->impl != nullptr)
        own->impl->_ResolveCallback(ref, flags, errorCode, interfaceIndex, fullName, hostTarget,
                                    port, txtLen, txtRecord, *own);
}

void BonjourClientImpl::_QueryCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                           uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                           const char* fullName, uint16_t rrtype, uint16_t rrclass,
                                           uint16_t rdlen, const void* rdata, uint32_t ttl,
                                           void* context) {
    auto* const own = static_cast<_Context*>(context);
    if (own != nullptr && own->impl != nullptr)
        own->impl->_QueryCallback(ref, flags, interfaceIndex, errorCode, fullName, rrtype, rrclass,
                                  rdlen, rdata, ttl, *own);
}

void BonjourClientImpl::_RegisterCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                              DNSServiceErrorType errorCode, const char* name,
                                              const char* regtype, const char* domain,
                                              void* context) {
    auto* const own = static_cast<_Context*>(context);
    if (own != nullptr && own->impl != nullptr)
        own->impl->_RegisterCallback(ref, flags, errorCode, name, regtype, domain);
}
