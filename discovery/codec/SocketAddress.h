#pragma once

#include "HostNotFound.h"
#include "Socket.h"
#include "SocketError.h"

#include <netinet/in.h>
#include <string>

/// One IPv4 or IPv6 endpoint: address, port and (for IPv6) scope, kept in the platform's
/// socket-address form. A value: copyable, comparable, and ordered so that it can key a set.
/// Every failure throws SocketError; an object that already exists is not changed by it.
class SocketAddress {
public:
    /// The any-address of `family`, port 0.
    explicit SocketAddress(Socket::Family family);
    /// The address, port and scope in a socket address of either family.
    explicit SocketAddress(const sockaddr& address);
    /// An IPv4 address, port 0.
    explicit SocketAddress(const in_addr& address);
    /// An IPv6 address, port 0, scope 0.
    explicit SocketAddress(const in6_addr& address);
    /// The address written in `text` (see Presentation), port 0, scope 0.
    explicit SocketAddress(const std::string& text);
    /// Always throws HostNotFound: host names are not looked up.
    SocketAddress(const std::string& host, Socket::Family family);

    /// Sets family and address; port and scope stay.
    void Assign(const in_addr& address);
    void Assign(const in6_addr& address);
    /// Replaces everything by what a socket address of either family holds.
    void Assign(const sockaddr& address);

    /// Sets family and address from text: with a ":" an IPv6 address, without one an IPv4 address
    /// in any form that inet_aton knows. Port and scope stay; a scope suffix is not understood.
    void Presentation(const std::string& text);
    /// The address alone, as text.
    std::string Presentation() const;

    /// The port in host byte order.
    int Port() const;
    void Port(int port);

    /// The IPv6 scope, an interface index; 0 for IPv4, where setting it does nothing.
    unsigned int Scope() const;
    void Scope(unsigned int scope);

    /// Makes this the any-address of its family.
    void Wildcard();

    /// Whether the address is valid on its own link only. For IPv6 that is fe80:: with exactly
    /// these two leading bytes; fe81:: to febf:: are not counted.
    bool IsLinkLocal() const;

    /// Host names are not looked up: always throws HostNotFound.
    [[noreturn]] void Name(const std::string& host, Socket::Family family);

    /// The platform's form, for socket calls, and its length in bytes.
    const sockaddr* _SockAddr() const { return &m_storage.any; }
    socklen_t _SockLen() const;

    /// IPv4 before IPv6; within a family byte by byte: port, (IPv6: flow information,) address,
    /// (IPv6: scope in memory order).
    bool operator<(const SocketAddress& other) const;
    bool operator==(const SocketAddress& other) const;

private:
    Socket::Family family() const { return static_cast<Socket::Family>(m_storage.any.sa_family); }
    void setFamily(Socket::Family family);
    int compare(const SocketAddress& other) const;

    /// Zero-filled before anything else, so that the bytes a family does not use are equal in equal
    /// addresses.
    union Storage {
        Storage();
        sockaddr any;
        sockaddr_in v4;
        sockaddr_in6 v6;
    };
    Storage m_storage;
};
