#pragma once

#include <QHostAddress>
#include <QRandomGenerator>

/// The program connects to one fixed port, so that tests that run side by side need addresses of
/// their own: all of 127.0.0.0/8 is this computer.
namespace loopback {

inline constexpr quint16 instrumentPort = 7100;

/// An address that is unlikely to be anybody else's.
inline QHostAddress someAddress() {
    auto* random = QRandomGenerator::system();
    return QHostAddress(0x7F000000U | random->bounded(0x010000U, 0xFF0000U));
}

/// Has a server listen on the instruments' port of an address of its own; `listen` takes the
/// address and tells whether it could.
template <typename Listen>
QHostAddress listenSomewhere(Listen listen) {
    for (int attempt = 0; attempt < 100; ++attempt) {
        const QHostAddress address = someAddress();
        if (listen(address))
            return address;
    }
    return {};
}

} // namespace loopback
