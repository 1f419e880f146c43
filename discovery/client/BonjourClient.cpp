#include "BonjourClient.h"

#include "BonjourClientImpl.h"

BonjourClient::BonjourClient(BonjourClientListener* listener)
    : m_listener(listener), m_impl(std::make_unique<BonjourClientImpl>(listener)) {}

BonjourClient::~BonjourClient() = default;

void BonjourClient::Clear() {
    m_impl.reset();
    m_impl = std::make_unique<BonjourClientImpl>(m_listener);
}

void BonjourClient::Browse(std::string regtype) {
    m_impl->Browse(std::move(regtype));
}

void BonjourClient::Register(std::string name, std::string regtype, std::string domain, int port,
                             const std::map<std::string, std::string>& txt) {
    m_impl->Register(std::move(name), std::move(regtype), std::move(domain), port, txt);
}

void BonjourClient::Confirm(std::string name, std::string ip) {
    m_impl->Confirm(std::move(name), std::move(ip));
}

void BonjourClient::Debug() {}
