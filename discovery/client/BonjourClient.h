#pragma once

#include <map>
#include <memory>
#include <stdexcept>
#include <string>

class BonjourClientImpl;
class BonjourClientListener;

/// Finds services on the local network and announces them. Everything found is told to one
/// listener, from the event loop of the thread that the client was made on. The client may be
/// cleared or destroyed from inside any of the listener's operations.
class BonjourClient {
public:
    /// A failure that the listener asked to have thrown; what() is the whole message.
    class Error : public std::runtime_error {
    public:
        using std::runtime_error::runtime_error;
    };

    /// `listener` is not owned and must outlive the client; null is told nothing.
    explicit BonjourClient(BonjourClientListener* listener);
    ~BonjourClient();
    BonjourClient(const BonjourClient&) = delete;
    BonjourClient& operator=(const BonjourClient&) = delete;

    /// Ends everything that was started; nothing of it is told any more.
    void Clear();

    /// Starts telling about services of the type `regtype`, for example "_gx7100._tcp", in the
    /// default domains, until Clear.
    void Browse(std::string regtype);

    /// Announces a service on this host, with `port` in host byte order, until Clear.
    void Register(std::string name, std::string regtype, std::string domain, int port,
                  const std::map<std::string, std::string>& txt);

    /// Asks the discovery service to make sure that the address record of `name` still is `ip`
    /// (dotted IPv4).
    void Confirm(std::string name, std::string ip);

    /// Does nothing.
    void Debug();

private:
    BonjourClientListener* m_listener;
    std::unique_ptr<BonjourClientImpl> m_impl;
};
