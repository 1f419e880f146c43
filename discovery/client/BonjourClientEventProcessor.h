#pragma once

#include <dns_sd.h>

class BonjourClientImpl;

/// Hands one reference's pending replies to a client, for an event loop that is not Qt's.
class BonjourClientEventProcessor {
public:
    /// `impl` is not owned; null makes ProcessEvent do nothing.
    explicit BonjourClientEventProcessor(BonjourClientImpl* impl) : m_impl(impl) {}

    void ProcessEvent(DNSServiceRef ref);

private:
    BonjourClientImpl* m_impl;
};
