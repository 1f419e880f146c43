#include "TlsTrust.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>
#include <QSslServer>
#include <QTemporaryDir>

#include <string>
#include <vector>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// Runs a program to its end. Spawned, not forked: the thread sanitizer does not take a fork among
/// threads.
void run(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    pid_t process = 0;
    if (posix_spawnp(&process, pointers[0], nullptr, nullptr, pointers.data(), environ) == 0)
        waitpid(process, nullptr, 0);
}

} // namespace

TlsTrust::TlsTrust() {
    const QTemporaryDir folder;
    const QString keyFile = folder.filePath(QStringLiteral("key.pem"));
    const QString certificateFile = folder.filePath(QStringLiteral("certificate.pem"));
    run({"openssl", "req", "-x509", "-nodes", "-newkey", "ec", "-pkeyopt",
         "ec_paramgen_curve:P-256", "-days", "2", "-subj", "/CN=test", "-addext",
         "subjectAltName=IP:127.0.0.1", "-keyout", keyFile.toStdString(), "-out",
         certificateFile.toStdString()});
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
