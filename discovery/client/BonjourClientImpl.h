#pragma once

#include "BonjourClientCallbackWindow.h"

#include <functional>
#include <map>
#include <string>

class BonjourClientListener;

/// The working part of a BonjourClient: starts the discovery library's operations, each in a slot
/// of the callback window, and turns their replies into the listener's calls. A browse lasts, a
/// resolve ends after its first complete reply, a query after its first batch of answers.
///
/// The listener may destroy this object from inside any call to it; the library may deliver again
/// what it was told to stop. So a context belongs to its slot and is cut off from this object when
/// the slot is freed, and stays in memory until the library's processing call has returned.
class BonjourClientImpl {
public:
    using _Context = BonjourContext;

    /// `listener` is not owned; it may be null.
    explicit BonjourClientImpl(BonjourClientListener* listener);
    BonjourClientImpl(const BonjourClientImpl&) = delete;
    BonjourClientImpl& operator=(const BonjourClientImpl&) = delete;
    ~BonjourClientImpl() = default;

    /// See BonjourClient.
    void Browse(std::string regtype);
    void Register(std::string name, std::string regtype, std::string domain, int port,
                  const std::map<std::string, std::string>& txt);
    void Confirm(std::string name, std::string ip);

    /// Delivers the pending replies of one reference. May destroy this object.
    void Process(DNSServiceRef ref);

private:
    using StartFunction = std::function<DNSServiceErrorType(DNSServiceRef*, void* context)>;

    DNSServiceErrorType start(int slot, const std::shared_ptr<_Context>& context,
                              const StartFunction& startFunction);
    void startResolve(uint32_t interfaceIndex, const std::string& name, const std::string& regtype,
                      const std::string& domain);
    DNSServiceErrorType startQuery(uint32_t interfaceIndex, uint16_t rrtype,
                                   const _Context& resolved);

    void _Error(std::string message, bool throwIt);
    void _Error(std::string message, int code, bool throwIt);

    void _BrowseCallback(DNSServiceRef ref, DNSServiceFlags flags, DNSServiceErrorType errorCode,
                         uint32_t interfaceIndex, const char* serviceName, const char* regtype,
                         const char* replyDomain);
    void _ResolveCallback(DNSServiceRef ref, DNSServiceFlags flags, DNSServiceErrorType errorCode,
                          uint32_t interfaceIndex, const char* fullName, const char* hostTarget,
                          uint16_t port, uint16_t txtLen, const unsigned char* txtRecord,
                          _Context& context);
    void _QueryCallback(DNSServiceRef ref, DNSServiceFlags flags, uint32_t interfaceIndex,
                        DNSServiceErrorType errorCode, const char* fullName, uint16_t rrtype,
                        uint16_t rrclass, uint16_t rdlen, const void* rdata, uint32_t ttl,
                        _Context& context);
    void _RegisterCallback(DNSServiceRef ref, DNSServiceFlags flags, DNSServiceErrorType errorCode,
                           const char* name, const char* regtype, const char* domain);

    static void DNSSD_API _BrowseCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                              uint32_t interfaceIndex,
                                              DNSServiceErrorType errorCode,
                                              const char* serviceName, const char* regtype,
                                              const char* replyDomain, void* context);
    static void DNSSD_API _ResolveCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                               uint32_t interfaceIndex,
                                               DNSServiceErrorType errorCode, const char* fullName,
                                               const char* hostTarget, uint16_t port,
                                               uint16_t txtLen, const unsigned char* txtRecord,
                                               void* context);
    static void DNSSD_API _QueryCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                             uint32_t interfaceIndex, DNSServiceErrorType errorCode,
                                             const char* fullName, uint16_t rrtype,
                                             uint16_t rrclass, uint16_t rdlen, const void* rdata,
                                             uint32_t ttl, void* context);
    static void DNSSD_API _RegisterCallbackStub(DNSServiceRef ref, DNSServiceFlags flags,
                                                DNSServiceErrorType errorCode, const char* name,
                                                const char* regtype, const char* domain,
                                                void* context);

    static std::map<int, std::string> _error_map;

    BonjourClientListener* m_listener;
    /// Expires with this object: how a function that called the listener sees that it is gone.
    std::shared_ptr<const bool> m_life = std::make_shared<const bool>(true);
    BonjourClientCallbackWindow m_window;
};
