#include "BonjourClientCallbackWindow.h"

#include <algorithm>

BonjourClientCallbackWindow::BonjourClientCallbackWindow(BonjourClientImpl* impl)
    : m_slots(slotCount, BonjourServiceRef(impl)) {}

bool BonjourClientCallbackWindow::isSlot(int index) const {
    return index >= 0 && index < static_cast<int>(m_slots.size());
}

int BonjourClientCallbackWindow::GetFreeDNSServiceRef() const {
    const auto slot = std::find_if(m_slots.begin(), m_slots.end(),
                                   [](const auto& each) { return each.Ref() == nullptr; });
    return slot == m_slots.end() ? -1 : static_cast<int>(slot - m_slots.begin());
}

DNSServiceRef* BonjourClientCallbackWindow::GetDNSServiceRef(int index) {
    return isSlot(index) ? m_slots[static_cast<std::size_t>(index)].Ref() : &m_fallback;
}

int BonjourClientCallbackWindow::FindDNSServiceRefIndex(DNSServiceRef ref) const {
    if (ref == nullptr)
        return -1;
    const auto slot = std::find_if(m_slots.begin(), m_slots.end(),
                                   [ref](const auto& each) { return each.Ref() == ref; });
    return slot == m_slots.end() ? -1 : static_cast<int>(slot - m_slots.begin());
}

bool BonjourClientCallbackWindow::SelectDNSServiceRef(int index) {
    return isSlot(index) && m_slots[static_cast<std::size_t>(index)].Select();
}

void BonjourClientCallbackWindow::FreeDNSServiceRef(int index) {
    if (isSlot(index))
        m_slots[static_cast<std::size_t>(index)].Free();
}

void BonjourClientCallbackWindow::FreeDNSServiceRef(DNSServiceRef ref) {
    FreeDNSServiceRef(FindDNSServiceRefIndex(ref));
}

void BonjourClientCallbackWindow::HoldContext(int index, std::shared_ptr<BonjourContext> context) {
    if (isSlot(index))
        m_slots[static_cast<std::size_t>(index)].Hold(std::move(context));
}

std::shared_ptr<BonjourContext> BonjourClientCallbackWindow::FindContext(DNSServiceRef ref) const {
    const int index = FindDNSServiceRefIndex(ref);
    return index < 0 ? nullptr : m_slots[static_cast<std::size_t>(index)].Context();
}

void BonjourClientCallbackWindow::_OutputDebugInfo(const char*) const {}
