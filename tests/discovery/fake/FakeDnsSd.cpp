#include "FakeDnsSd.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <algorithm>
#include <arpa/inet.h>
#include <sys/eventfd.h>
#include <unistd.h>
#include <utility>

/// One operation: its socket is readable while something is pending.
struct _DNSServiceRef_t {
    explicit _DNSServiceRef_t(FakeDnsSd::Callbacks given) : callbacks(given) {}
    _DNSServiceRef_t(const _DNSServiceRef_t&) = delete;
    _DNSServiceRef_t& operator=(const _DNSServiceRef_t&) = delete;
    ~_DNSServiceRef_t() { ::close(socket); }

    int socket = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    FakeDnsSd::Callbacks callbacks;
    std::deque<std::function<void(DNSServiceRef, const FakeDnsSd::Callbacks&)>> pending;
    DNSServiceErrorType processingCode = kDNSServiceErr_NoError;
};

namespace {

FakeDnsSd* s_instance = nullptr;

constexpr const char* regtype = "_gx7100._tcp";
constexpr const char* domain = "local.";

} // namespace

FakeDnsSd::FakeDnsSd() {
    s_instance = this;
}

FakeDnsSd::~FakeDnsSd() {
    s_instance = nullptr;
}

FakeDnsSd* FakeDnsSd::instance() {
    return s_instance;
}

std::string FakeDnsSd::nextCall(DNSServiceRef* ref) {
    if (m_calls.empty())
        return {};
    const auto call = m_calls.front();
    m_calls.pop_front();
    if (ref != nullptr)
        *ref = call.second;
    return call.first;
}

void FakeDnsSd::failNext(const std::string& call, DNSServiceErrorType code) {
    m_failures.emplace_back(call, code);
}

DNSServiceErrorType FakeDnsSd::answerTo(const std::string& call) {
    const auto failure =
        std::find_if(m_failures.begin(), m_failures.end(),
                     [&call](const auto& each) { return call.starts_with(each.first); });
    m_calls.emplace_back(call, nullptr);
    if (failure == m_failures.end())
        return kDNSServiceErr_NoError;
    const DNSServiceErrorType code = failure->second;
    m_failures.erase(failure);
    return code;
}

DNSServiceErrorType FakeDnsSd::start(const std::string& call, DNSServiceRef* ref,
                                     Callbacks callbacks) {
    const DNSServiceErrorType code = answerTo(call);
    if (code != kDNSServiceErr_NoError) {
        *ref = reinterpret_cast<DNSServiceRef>(ref);
        return code;
    }
    auto operation = std::make_shared<_DNSServiceRef_t>(callbacks);
    *ref = m_calls.back().second = operation.get();
    m_operations.emplace(*ref, std::move(operation));
    return code;
}

bool FakeDnsSd::isRunning(DNSServiceRef ref) const {
    return m_operations.count(ref) != 0;
}

bool FakeDnsSd::mayCall(DNSServiceRef ref, const char* function) {
    if (!isRunning(ref))
        m_misuses.emplace_back(function);
    return isRunning(ref);
}

int FakeDnsSd::socketOf(DNSServiceRef ref) {
    return mayCall(ref, "DNSServiceRefSockFD") ? ref->socket : -1;
}

DNSServiceErrorType FakeDnsSd::process(DNSServiceRef ref) {
    if (!mayCall(ref, "DNSServiceProcessResult"))
        return kDNSServiceErr_BadParam;
    const auto operation = m_operations.at(ref);
    eventfd_t count = 0;
    ::eventfd_read(operation->socket, &count);
    while (!operation->pending.empty()) {
        const auto reply = operation->pending.front();
        operation->pending.pop_front();
        ++m_callbackCount;
        reply(ref, operation->callbacks);
    }
    return std::exchange(operation->processingCode, kDNSServiceErr_NoError);
}

void FakeDnsSd::deallocate(DNSServiceRef ref) {
    if (mayCall(ref, "DNSServiceRefDeallocate"))
        m_operations.erase(ref);
}

int FakeDnsSd::running() const {
    return static_cast<int>(m_operations.size());
}

void FakeDnsSd::deliver() {
    const auto isPending = [this] {
        return std::any_of(m_operations.begin(), m_operations.end(), [](const auto& each) {
            return !each.second->pending.empty() ||
                   each.second->processingCode != kDNSServiceErr_NoError;
        });
    };
    // Generous, and only to end a test that would never end.
    const QDeadlineTimer limit(30000);
    do
        QCoreApplication::processEvents();
    while (isPending() && !limit.hasExpired());
}

void FakeDnsSd::post(DNSServiceRef ref,
                     std::function<void(DNSServiceRef, const Callbacks&)> reply) {
    if (!mayCall(ref, "an answer to an ended operation"))
        return;
    ref->pending.push_back(std::move(reply));
    ::eventfd_write(ref->socket, 1);
}

void FakeDnsSd::replyToBrowse(DNSServiceRef ref, DNSServiceFlags flags, const std::string& name,
                              uint32_t interfaceIndex) {
    post(ref, [=](DNSServiceRef self, const Callbacks& to) {
        to.browse(self, flags, interfaceIndex, kDNSServiceErr_NoError, name.c_str(), regtype,
                  domain, to.context);
    });
}

void FakeDnsSd::replyToResolve(DNSServiceRef ref, DNSServiceFlags flags, const std::string& txt,
                               const std::string& host, uint32_t interfaceIndex) {
    post(ref, [=](DNSServiceRef self, const Callbacks& to) {
        // On the heap and exactly as large as the record: a sanitizer watches its end.
        const std::vector<unsigned char> record(txt.begin(), txt.end());
        to.resolve(self, flags, interfaceIndex, kDNSServiceErr_NoError, "full name", host.c_str(),
                   htons(7100), static_cast<uint16_t>(record.size()), record.data(), to.context);
    });
}

void FakeDnsSd::replyToQuery(DNSServiceRef ref, DNSServiceFlags flags, uint16_t rrtype,
                             const std::string& data, uint32_t interfaceIndex) {
    post(ref, [=](DNSServiceRef self, const Callbacks& to) {
        const std::vector<unsigned char> bytes(data.begin(), data.end());
        to.query(self, flags, interfaceIndex, kDNSServiceErr_NoError, "inst.local.", rrtype, 1,
                 static_cast<uint16_t>(bytes.size()), bytes.data(), 120, to.context);
    });
}

void FakeDnsSd::replyToRegister(DNSServiceRef ref, const std::string& name) {
    post(ref, [=](DNSServiceRef self, const Callbacks& to) {
        to.registration(self, 0, kDNSServiceErr_NoError, name.c_str(), regtype, domain, to.context);
    });
}

void FakeDnsSd::replyWithFailure(DNSServiceRef ref, DNSServiceErrorType code,
                                 DNSServiceFlags flags) {
    post(ref, [=](DNSServiceRef self, const Callbacks& to) {
        if (to.browse != nullptr)
            to.browse(self, flags, 0, code, nullptr, nullptr, nullptr, to.context);
        else if (to.resolve != nullptr)
            to.resolve(self, flags, 0, code, nullptr, nullptr, 0, 0, nullptr, to.context);
        else if (to.query != nullptr)
            to.query(self, flags, 0, code, nullptr, 0, 0, 0, nullptr, 0, to.context);
        else
            to.registration(self, flags, code, nullptr, nullptr, nullptr, to.context);
    });
}

void FakeDnsSd::failProcessing(DNSServiceRef ref, DNSServiceErrorType code) {
    if (!mayCall(ref, "a failure of an ended operation"))
        return;
    ref->processingCode = code;
    ::eventfd_write(ref->socket, 1);
}
