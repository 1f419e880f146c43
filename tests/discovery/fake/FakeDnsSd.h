#pragma once

#include <deque>
#include <dns_sd.h>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

/// The discovery library as a test wants it: a program linked with it talks to the one FakeDnsSd
/// that exists instead of the system's daemon. What the code under test starts is read as text, in
/// order; what it is answered goes through a real socket that the event loop watches.
///
/// Like the real library it delivers everything that is pending in one processing call, also to an
/// operation that was ended half-way through it.
class FakeDnsSd {
public:
    FakeDnsSd();
    ~FakeDnsSd();
    FakeDnsSd(const FakeDnsSd&) = delete;
    FakeDnsSd& operator=(const FakeDnsSd&) = delete;

    static FakeDnsSd* instance();

    /// The next call in order, for example "browse 0 _gx7100._tcp"; empty when there was none.
    /// `ref`, when given, gets the reference that the call made (null when it failed).
    std::string nextCall(DNSServiceRef* ref = nullptr);

    /// The next call whose text starts with `call` answers `code`, and leaves nonsense behind where
    /// its reference should be.
    void failNext(const std::string& call, DNSServiceErrorType code);

    /// Answers. Nothing is delivered before the event loop runs; see deliver.
    void replyToBrowse(DNSServiceRef ref, DNSServiceFlags flags, const std::string& name,
                       uint32_t interfaceIndex = 3);
    void replyToResolve(DNSServiceRef ref, DNSServiceFlags flags, const std::string& txt,
                        const std::string& host = "inst.local.", uint32_t interfaceIndex = 3);
    void replyToQuery(DNSServiceRef ref, DNSServiceFlags flags, uint16_t rrtype,
                      const std::string& data, uint32_t interfaceIndex = 3);
    void replyToRegister(DNSServiceRef ref, const std::string& name);
    /// The operation, of whatever kind, fails: no texts, no data.
    void replyWithFailure(DNSServiceRef ref, DNSServiceErrorType code, DNSServiceFlags flags = 0);
    /// The processing call itself answers `code`, after having delivered what is pending.
    void failProcessing(DNSServiceRef ref, DNSServiceErrorType code);

    /// Runs the event loop until every answer to a running operation has been delivered.
    void deliver();

    /// Operations started and not yet ended.
    int running() const;
    /// Callbacks made so far.
    int callbackCount() const { return m_callbackCount; }
    /// Calls that no correct program makes: with a reference that is none, or no longer.
    const std::vector<std::string>& misuses() const { return m_misuses; }

    /// What an operation calls back; one of the four is set.
    struct Callbacks {
        DNSServiceBrowseReply browse = nullptr;
        DNSServiceResolveReply resolve = nullptr;
        DNSServiceQueryRecordReply query = nullptr;
        DNSServiceRegisterReply registration = nullptr;
        void* context = nullptr;
    };
    /// The library's functions.
    DNSServiceErrorType start(const std::string& call, DNSServiceRef* ref, Callbacks callbacks);
    DNSServiceErrorType answerTo(const std::string& call);
    int socketOf(DNSServiceRef ref);
    DNSServiceErrorType process(DNSServiceRef ref);
    void deallocate(DNSServiceRef ref);

private:
    void post(DNSServiceRef ref, std::function<void(DNSServiceRef, const Callbacks&)> reply);
    bool isRunning(DNSServiceRef ref) const;
    bool mayCall(DNSServiceRef ref, const char* function);

    std::deque<std::pair<std::string, DNSServiceRef>> m_calls;
    std::deque<std::pair<std::string, DNSServiceErrorType>> m_failures;
    std::map<DNSServiceRef, std::shared_ptr<_DNSServiceRef_t>> m_operations;
    std::vector<std::string> m_misuses;
    int m_callbackCount = 0;
};
