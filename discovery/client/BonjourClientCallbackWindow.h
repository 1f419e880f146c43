#pragma once

#include "BonjourServiceRef.h"

#include <vector>

/// The operations that a client has running: a fixed table of slots, one operation each. Destroying
/// it ends them all. GUI thread.
class BonjourClientCallbackWindow {
public:
    /// Operations that can run at the same time.
    static constexpr int slotCount = 100;

    explicit BonjourClientCallbackWindow(BonjourClientImpl* impl);

    /// The index of the first free slot, or -1.
    int GetFreeDNSServiceRef() const;
    /// Where to put a slot's reference; for an index that does not exist, a place of no meaning.
    DNSServiceRef* GetDNSServiceRef(int index);
    /// The index of the slot that holds `ref`, or -1.
    int FindDNSServiceRefIndex(DNSServiceRef ref) const;
    /// Starts watching a slot; false for an index that does not exist or a free slot.
    bool SelectDNSServiceRef(int index);
    /// Ends a slot's operation, if it has one.
    void FreeDNSServiceRef(int index);
    void FreeDNSServiceRef(DNSServiceRef ref);
    /// Makes a slot the owner of its operation's context.
    void HoldContext(int index, std::shared_ptr<BonjourContext> context);
    /// The context of the operation that `ref` stands for, or null.
    std::shared_ptr<BonjourContext> FindContext(DNSServiceRef ref) const;
    /// Does nothing.
    void _OutputDebugInfo(const char* text) const;

private:
    bool isSlot(int index) const;

    std::vector<BonjourServiceRef> m_slots;
    DNSServiceRef m_fallback = nullptr;
};
