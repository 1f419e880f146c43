#pragma once

#include "SocketError.h"

/// A host name that has no address.
class HostNotFound : public SocketError {
public:
    using SocketError::SocketError;
};
