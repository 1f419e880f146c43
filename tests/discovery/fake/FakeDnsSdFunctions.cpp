// The library's functions, for the linker: each turns its arguments into a text and hands on.

#include "FakeDnsSd.h"

#include <arpa/inet.h>
#include <iomanip>
#include <sstream>

namespace {

std::string hex(const void* data, std::size_t size) {
    std::ostringstream text;
    for (std::size_t i = 0; i < size; ++i)
        text << std::hex << std::setw(2) << std::setfill('0')
             << static_cast<int>(static_cast<const unsigned char*>(data)[i]);
    return text.str();
}

/// Only what is out of the ordinary is said: these calls pass no flags.
std::string flagsText(DNSServiceFlags flags) {
    return flags == 0 ? "" : " flags " + std::to_string(flags);
}

std::string orDefault(const char* text) {
    return text == nullptr ? "(default)" : text;
}

} // namespace

DNSServiceErrorType DNSSD_API DNSServiceBrowse(DNSServiceRef* sdRef, DNSServiceFlags flags,
                                               uint32_t interfaceIndex, const char* regtype,
                                               const char* domain, DNSServiceBrowseReply callBack,
                                               void* context) {
    std::ostringstream call;
    call << "browse " << interfaceIndex << ' ' << regtype << ' ' << orDefault(domain)
         << flagsText(flags);
    return FakeDnsSd::instance()->start(call.str(), sdRef,
                                        {.browse = callBack, .context = context});
}

DNSServiceErrorType DNSSD_API DNSServiceResolve(DNSServiceRef* sdRef, DNSServiceFlags flags,
                                                uint32_t interfaceIndex, const char* name,
                                                const char* regtype, const char* domain,
                                                DNSServiceResolveReply callBack, void* context) {
    std::ostringstream call;
    call << "resolve " << interfaceIndex << ' ' << name << ' ' << regtype << ' ' << domain
         << flagsText(flags);
    return FakeDnsSd::instance()->start(call.str(), sdRef,
                                        {.resolve = callBack, .context = context});
}

DNSServiceErrorType DNSSD_API DNSServiceQueryRecord(DNSServiceRef* sdRef, DNSServiceFlags flags,
                                                    uint32_t interfaceIndex, const char* fullname,
                                                    uint16_t rrtype, uint16_t rrclass,
                                                    DNSServiceQueryRecordReply callBack,
                                                    void* context) {
    std::ostringstream call;
    call << "query " << interfaceIndex << ' ' << fullname << ' ' << rrtype << ' ' << rrclass
         << flagsText(flags);
    return FakeDnsSd::instance()->start(call.str(), sdRef, {.query = callBack, .context = context});
}

DNSServiceErrorType DNSSD_API DNSServiceRegister(DNSServiceRef* sdRef, DNSServiceFlags flags,
                                                 uint32_t interfaceIndex, const char* name,
                                                 const char* regtype, const char* domain,
                                                 const char* host, uint16_t port, uint16_t txtLen,
                                                 const void* txtRecord,
                                                 DNSServiceRegisterReply callBack, void* context) {
    std::ostringstream call;
    call << "register " << interfaceIndex << ' ' << name << ' ' << regtype << ' ' << domain << ' '
         << orDefault(host) << ' ' << hex(&port, sizeof port) << ' ' << hex(txtRecord, txtLen)
         << flagsText(flags);
    return FakeDnsSd::instance()->start(call.str(), sdRef,
                                        {.registration = callBack, .context = context});
}

DNSServiceErrorType DNSSD_API DNSServiceReconfirmRecord(DNSServiceFlags flags,
                                                        uint32_t interfaceIndex,
                                                        const char* fullname, uint16_t rrtype,
                                                        uint16_t rrclass, uint16_t rdlen,
                                                        const void* rdata) {
    std::ostringstream call;
    call << "reconfirm " << interfaceIndex << ' ' << fullname << ' ' << rrtype << ' ' << rrclass
         << ' ' << hex(rdata, rdlen) << flagsText(flags);
    return FakeDnsSd::instance()->answerTo(call.str());
}

int DNSSD_API DNSServiceRefSockFD(DNSServiceRef sdRef) {
    return FakeDnsSd::instance()->socketOf(sdRef);
}

DNSServiceErrorType DNSSD_API DNSServiceProcessResult(DNSServiceRef sdRef) {
    return FakeDnsSd::instance()->process(sdRef);
}

void DNSSD_API DNSServiceRefDeallocate(DNSServiceRef sdRef) {
    FakeDnsSd::instance()->deallocate(sdRef);
}
