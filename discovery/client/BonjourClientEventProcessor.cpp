#include "BonjourClientEventProcessor.h"

#include "BonjourClientImpl.h"

void BonjourClientEventProcessor::ProcessEvent(DNSServiceRef ref) {
    if (m_impl != nullptr)
        m_impl->Process(ref);
}
