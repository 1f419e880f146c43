#pragma once

#include "BonjourContext.h"

#include <dns_sd.h>
#include <memory>

class BonjourServiceRef_Private;

/// One slot of the callback window: free, or holding the reference and the context of one running
/// operation. A copy is a new, free slot of the same client: it never shares an operation.
class BonjourServiceRef {
public:
    explicit BonjourServiceRef(BonjourClientImpl* impl);
    BonjourServiceRef(const BonjourServiceRef& other);
    BonjourServiceRef& operator=(const BonjourServiceRef&) = delete;
    ~BonjourServiceRef();

    /// Starts watching the reference's socket; false when the slot is free.
    bool Select();
    /// Ends the operation and releases its context. Does nothing when the slot is free.
    void Free();

    /// Where the discovery library puts the reference of an operation that it starts.
    DNSServiceRef* Ref();
    DNSServiceRef Ref() const;

    /// Makes the slot the owner of its operation's context.
    void Hold(std::shared_ptr<BonjourContext> context);
    std::shared_ptr<BonjourContext> Context() const;

private:
    std::unique_ptr<BonjourServiceRef_Private> m_private;
};
