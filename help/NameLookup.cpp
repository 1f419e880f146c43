#include "NameLookup.h"

#include <QCoreApplication>
#include <QEvent>
#include <QHostAddress>
#include <QTimer>

#include <mutex>
#include <thread>

#if defined(Q_OS_WIN)
#include <ws2tcpip.h>
#else
#include <netdb.h>
#include <sys/socket.h>
#endif

/// Where the thread leaves its answer, as long as there is somebody to read it.
struct NameLookup::Mailbox {
    std::mutex mutex;
    NameLookup* reader = nullptr;
    bool found = false;
};

NameLookup::NameLookup(const QString& host, std::chrono::milliseconds patience, Resolve resolve)
    : m_mailbox(std::make_shared<Mailbox>()) {
    m_mailbox->reader = this;
    if (!QHostAddress(host).isNull()) {
        QTimer::singleShot(0, this, [this] { finish(true); });
        return;
    }
    QTimer::singleShot(patience, this, [this] { finish(false); });
    std::thread([mailbox = m_mailbox, name = host.toStdString(), resolve] {
        const bool found = resolve(name);
        const std::scoped_lock lock(mailbox->mutex);
        mailbox->found = found;
        if (mailbox->reader != nullptr)
            QCoreApplication::postEvent(mailbox->reader, new QEvent(QEvent::User));
    }).detach();
}

NameLookup::~NameLookup() {
    const std::scoped_lock lock(m_mailbox->mutex);
    m_mailbox->reader = nullptr;
}

void NameLookup::customEvent(QEvent* /*event*/) {
    bool found = false;
    {
        const std::scoped_lock lock(m_mailbox->mutex);
        found = m_mailbox->found;
    }
    finish(found);
}

void NameLookup::finish(bool found) {
    if (m_finished)
        return;
    m_finished = true;
    emit finished(found);
}

bool NameLookup::systemResolve(const std::string& host) {
    addrinfo* addresses = nullptr;
    if (getaddrinfo(host.c_str(), nullptr, nullptr, &addresses) != 0)
        return false;
    freeaddrinfo(addresses);
    return true;
}
