#pragma once

#include "SocketAddress.h"

#include <map>
#include <string>

/// What a BonjourClient tells about the services it finds. Every call comes on the thread of the
/// client's event loop, from inside a callback of the discovery library: an operation may destroy
/// the client, but must not throw.
class BonjourClientListener {
public:
    virtual ~BonjourClientListener();

    /// A service was found at `address`; called once for every address of it. Texts are as
    /// received, UTF-8 or not.
    virtual void AddService(std::string name, std::string regtype, std::string domain,
                            unsigned int interfaceIndex, std::string hostTarget,
                            const SocketAddress& address,
                            const std::map<std::string, std::string>& txt);

    /// A service was withdrawn; it may never have been added.
    virtual void RemoveService(std::string name, std::string regtype, std::string domain);

    /// A service given to BonjourClient::Register is announced, under `name` (which is another one
    /// when that name was taken).
    virtual void ServiceRegistered(std::string name, std::string regtype, std::string domain);

    /// Something failed. True asks for a BonjourClient::Error to be thrown, which happens only
    /// where the failure is that of a call made by the client's user.
    virtual bool ServiceError(std::string message);
};
