#include "TlsTrust.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

TlsTrust::TlsTrust() {
    const QTemporaryDir folder;
    const QString keyFile = folder.filePath(QStringLiteral("key.pem"));
    const QString certificateFile = folder.filePath(QStringLiteral("certificate.pem"));
    QProcess::execute(QStringLiteral("openssl"),
                      {QStringLiteral("req"), QStringLiteral("-x509"), QStringLiteral("-nodes"),
                       QStringLiteral("-newkey"), QStringLiteral("ec"), QStringLiteral("-pkeyopt"),
                       QStringLiteral("ec_paramgen_curve:P-256"), QStringLiteral("-days"),
                       QStringLiteral("2"), QStringLiteral("-subj"), QStringLiteral("/CN=test"),
                       QStringLiteral("-addext"), QStringLiteral("subjectAltName=IP:127.0.0.1"),
                       QStringLiteral("-keyout"), keyFile, QStringLiteral("-out"),
                       certificateFile});
    QFile key(keyFile);
    const auto certificates = QSslCertificate::fromPath(certificateFile);
    if (certificates.isEmpty() || !key.open(QIODevice::ReadOnly))
        return;
    m_identity.setLocalCertificate(certificates.first());
    m_identity.setPrivateKey(QSslKey(&key, QSsl::Ec));
    QSslConfiguration trusting = m_before;
    trusting.addCaCertificate(certificates.first());
    QSslConfiguration::setDefaultConfiguration(trusting);
}

TlsTrust::~TlsTrust() {
    QSslConfiguration::setDefaultConfiguration(m_before);
}

std::unique_ptr<QTcpServer> TlsTrust::server() const {
    auto server = std::make_unique<QSslServer>();
    server->setSslConfiguration(m_identity);
    return server;
}
