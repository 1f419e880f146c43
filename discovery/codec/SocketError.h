#pragma once

#include <stdexcept>

/// An address that cannot be: an unknown family or an illegal text. The message says which.
class SocketError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};
