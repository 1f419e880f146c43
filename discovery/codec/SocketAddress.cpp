#include "SocketAddress.h"

#include <arpa/inet.h>
#include <array>
#include <cstddef>
#include <cstring>

namespace {

/// Room for the longest text of an address, with some to spare.
constexpr std::size_t presentationLimit = 52;

[[noreturn]] void throwUnknownFamily() {
    throw SocketError("SocketAddress: unknown socket family");
}

} // namespace

SocketAddress::Storage::Storage() {
    std::memset(this, 0, sizeof *this);
}

SocketAddress::SocketAddress(Socket::Family family) {
    setFamily(family);
    Wildcard();
    Port(0);
}

SocketAddress::SocketAddress(const sockaddr& address) {
    Assign(address);
}

SocketAddress::SocketAddress(const in_addr& address) {
    Assign(address);
}

SocketAddress::SocketAddress(const in6_addr& address) {
    Assign(address);
}

SocketAddress::SocketAddress(const std::string& text) {
    Presentation(text);
}

SocketAddress::SocketAddress(const std::string& host, Socket::Family family) {
    Name(host, family);
}

void SocketAddress::setFamily(Socket::Family family) {
    if (family != Socket::IPv4 && family != Socket::IPv6)
        throwUnknownFamily();
    m_storage.any.sa_family = static_cast<sa_family_t>(family);
}

// What a family does not use is zero, also where an address of the other family was before: all
// bytes count in comparisons.
void SocketAddress::Assign(const in_addr& address) {
    setFamily(Socket::IPv4);
    m_storage.v4.sin_addr = address;
    std::memset(m_storage.v4.sin_zero, 0, sizeof m_storage.v4.sin_zero);
}

void SocketAddress::Assign(const in6_addr& address) {
    if (family() != Socket::IPv6)
        m_storage.v6.sin6_flowinfo = 0;
    setFamily(Socket::IPv6);
    m_storage.v6.sin6_addr = address;
}

void SocketAddress::Assign(const sockaddr& address) {
    Storage storage;
    switch (address.sa_family) {
    case Socket::IPv4:
        std::memcpy(&storage.v4, &address, sizeof storage.v4);
        std::memset(storage.v4.sin_zero, 0, sizeof storage.v4.sin_zero);
        break;
    case Socket::IPv6:
        // Through void: the caller's object is as large as its family says.
        std::memcpy(&storage.v6, static_cast<const void*>(&address), sizeof storage.v6);
        break;
    default:
        throwUnknownFamily();
    }
    m_storage = storage;
}

void SocketAddress::Presentation(const std::string& text) {
    const bool isWhole = text.find('\0') == std::string::npos;
    if (text.find(':') == std::string::npos) {
        in_addr address{};
        if (!isWhole || inet_aton(text.c_str(), &address) == 0)
            throw SocketError("SocketAddress: illegal address " + text);
        Assign(address);
    } else {
        in6_addr address{};
        if (!isWhole || inet_pton(AF_INET6, text.c_str(), &address) != 1)
            throw SocketError("SocketAddress: illegal address " + text);
        Assign(address);
    }
}

std::string SocketAddress::Presentation() const {
    std::array<char, presentationLimit> text{};
    switch (family()) {
    case Socket::IPv4:
        // Unlike inet_ntoa, which writes the same text, this has no buffer shared by all threads.
        inet_ntop(AF_INET, &m_storage.v4.sin_addr, text.data(), text.size());
        return text.data();
    case Socket::IPv6:
        if (inet_ntop(AF_INET6, &m_storage.v6.sin6_addr, text.data(), text.size()) == nullptr)
            throw SocketError("SocketAddress: bad IPv6 address");
        return text.data();
    }
    throwUnknownFamily();
}

int SocketAddress::Port() const {
    switch (family()) {
    case Socket::IPv4:
        return ntohs(m_storage.v4.sin_port);
    case Socket::IPv6:
        return ntohs(m_storage.v6.sin6_port);
    }
    throwUnknownFamily();
}

void SocketAddress::Port(int port) {
    const in_port_t stored = htons(static_cast<in_port_t>(port));
    switch (family()) {
    case Socket::IPv4:
        m_storage.v4.sin_port = stored;
        return;
    case Socket::IPv6:
        m_storage.v6.sin6_port = stored;
        return;
    }
    throwUnknownFamily();
}

unsigned int SocketAddress::Scope() const {
    switch (family()) {
    case Socket::IPv4:
        return 0;
    case Socket::IPv6:
        return m_storage.v6.sin6_scope_id;
    }
    throwUnknownFamily();
}

void SocketAddress::Scope(unsigned int scope) {
    switch (family()) {
    case Socket::IPv4:
        return;
    case Socket::IPv6:
        m_storage.v6.sin6_scope_id = scope;
        return;
    }
    throwUnknownFamily();
}

void SocketAddress::Wildcard() {
    switch (family()) {
    case Socket::IPv4:
        m_storage.v4.sin_addr = in_addr{};
        return;
    case Socket::IPv6:
        m_storage.v6.sin6_addr = in6_addr{};
        return;
    }
    throwUnknownFamily();
}

bool SocketAddress::IsLinkLocal() const {
    const auto startsWith = [](const void* address, unsigned char first, unsigned char second) {
        const auto* bytes = static_cast<const unsigned char*>(address);
        return bytes[0] == first && bytes[1] == second;
    };
    switch (family()) {
    case Socket::IPv4:
        return startsWith(&m_storage.v4.sin_addr, 169, 254);
    case Socket::IPv6:
        return startsWith(&m_storage.v6.sin6_addr, 0xFE, 0x80);
    }
    throwUnknownFamily();
}

void SocketAddress::Name(const std::string& host, Socket::Family) {
    throw HostNotFound("SocketAddress: " + host + " not found");
}

socklen_t SocketAddress::_SockLen() const {
    switch (family()) {
    case Socket::IPv4:
        return sizeof m_storage.v4;
    case Socket::IPv6:
        return sizeof m_storage.v6;
    }
    throwUnknownFamily();
}

int SocketAddress::compare(const SocketAddress& other) const {
    if (family() != other.family())
        return family() < other.family() ? -1 : 1;
    // From the port on: what stands before it (family, on some platforms a length) is equal.
    constexpr std::size_t start = offsetof(sockaddr_in, sin_port);
    static_assert(start == offsetof(sockaddr_in6, sin6_port));
    const auto* left = reinterpret_cast<const unsigned char*>(&m_storage);
    const auto* right = reinterpret_cast<const unsigned char*>(&other.m_storage);
    return std::memcmp(left + start, right + start, _SockLen() - start);
}

bool SocketAddress::operator<(const SocketAddress& other) const {
    return compare(other) < 0;
}

bool SocketAddress::operator==(const SocketAddress& other) const {
    return compare(other) == 0;
}
