#include "BonjourServiceRef_Private.h"

#include "BonjourClientImpl.h"

#include <QSocketNotifier>
#include <utility>

bool BonjourServiceRef_Private::Select() {
    if (m_ref == nullptr)
        return false;
    delete m_notifier;
    m_notifier = new QSocketNotifier(DNSServiceRefSockFD(m_ref), QSocketNotifier::Read, this);
    connect(m_notifier, &QSocketNotifier::activated, this,
            &BonjourServiceRef_Private::OnHandleRead);
    return true;
}

void BonjourServiceRef_Private::Free() {
    if (m_ref == nullptr)
        return;
    delete std::exchange(m_notifier, nullptr);
    if (m_context)
        m_context->impl = nullptr;
    DNSServiceRefDeallocate(std::exchange(m_ref, nullptr));
    m_context.reset();
}

void BonjourServiceRef_Private::OnHandleRead() {
    m_impl->Process(m_ref);
}
