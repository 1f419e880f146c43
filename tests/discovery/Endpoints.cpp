#include "Endpoints.h"

#include <arpa/inet.h>
#include <cstring>

SocketAddress ipv4(std::array<unsigned char, 4> bytes, int port) {
    in_addr address;
    std::memcpy(&address, bytes.data(), bytes.size());
    SocketAddress made(address);
    made.Port(port);
    return made;
}

SocketAddress ipv6(std::array<unsigned char, 16> bytes, int port, unsigned int scope) {
    in6_addr address;
    std::memcpy(&address, bytes.data(), bytes.size());
    SocketAddress made(address);
    made.Port(port);
    made.Scope(scope);
    return made;
}

sockaddr_in6 platformIPv6(uint16_t port, uint32_t flow, const char* text, uint32_t scope) {
    sockaddr_in6 address;
    std::memset(&address, 0xA5, sizeof address);
    address.sin6_family = AF_INET6;
    address.sin6_port = htons(port);
    address.sin6_flowinfo = flow;
    inet_pton(AF_INET6, text, &address.sin6_addr);
    address.sin6_scope_id = scope;
    return address;
}

const sockaddr& asAny(const sockaddr_in6& address) {
    return reinterpret_cast<const sockaddr&>(address);
}
