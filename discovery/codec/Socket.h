#pragma once

#include <sys/socket.h>

namespace Socket {

/// An address family, numbered as the platform numbers it. Only these two are supported; any other
/// value is an unknown socket family.
enum Family : int {
    IPv4 = AF_INET,
    IPv6 = AF_INET6,
};

} // namespace Socket
