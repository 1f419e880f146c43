#pragma once

#include "SocketAddress.h"

#include <array>

/// An address with everything set, made without the text parser.
SocketAddress ipv4(std::array<unsigned char, 4> bytes, int port);
SocketAddress ipv6(std::array<unsigned char, 16> bytes, int port, unsigned int scope);

/// A platform address whose every byte was something else before. `flow` in network byte order.
sockaddr_in6 platformIPv6(uint16_t port, uint32_t flow, const char* text, uint32_t scope);

const sockaddr& asAny(const sockaddr_in6& address);
