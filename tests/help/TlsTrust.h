#pragma once

#include <QSslConfiguration>
#include <QTcpServer>

#include <memory>

/// Makes servers that speak TLS on loopback, and has every client of this process trust them for as
/// long as it lives.
class TlsTrust {
public:
    /// Makes a certificate with the openssl program.
    TlsTrust();
    ~TlsTrust();
    TlsTrust(const TlsTrust&) = delete;
    TlsTrust& operator=(const TlsTrust&) = delete;

    /// Whether the certificate could be made.
    bool isValid() const { return !m_identity.localCertificate().isNull(); }
    std::unique_ptr<QTcpServer> server() const;

private:
    QSslConfiguration m_before = QSslConfiguration::defaultConfiguration();
    QSslConfiguration m_identity = QSslConfiguration::defaultConfiguration();
};
