#include "BonjourClientListener.h"

BonjourClientListener::~BonjourClientListener() = default;

void BonjourClientListener::AddService(std::string, std::string, std::string, unsigned int,
                                       std::string, const SocketAddress&,
                                       const std::map<std::string, std::string>&) {}

void BonjourClientListener::RemoveService(std::string, std::string, std::string) {}

void BonjourClientListener::ServiceRegistered(std::string, std::string, std::string) {}

bool BonjourClientListener::ServiceError(std::string) {
    return false;
}
