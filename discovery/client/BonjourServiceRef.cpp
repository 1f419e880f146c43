#include "BonjourServiceRef.h"

#include "BonjourServiceRef_Private.h"

BonjourServiceRef::BonjourServiceRef(BonjourClientImpl* impl)
    : m_private(std::make_unique<BonjourServiceRef_Private>(impl)) {}

BonjourServiceRef::BonjourServiceRef(const BonjourServiceRef& other)
    : BonjourServiceRef(other.m_private->m_impl) {}

BonjourServiceRef::~BonjourServiceRef() = default;

bool BonjourServiceRef::Select() {
    return m_private->Select();
}

void BonjourServiceRef::Free() {
    m_private->Free();
}

DNSServiceRef* BonjourServiceRef::Ref() {
    return &m_private->m_ref;
}

DNSServiceRef BonjourServiceRef::Ref() const {
    return m_private->m_ref;
}

void BonjourServiceRef::Hold(std::shared_ptr<BonjourContext> context) {
    m_private->m_context = std::move(context);
}

std::shared_ptr<BonjourContext> BonjourServiceRef::Context() const {
    return m_private->m_context;
}
