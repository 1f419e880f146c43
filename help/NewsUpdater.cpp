#include "NewsUpdater.h"

#include "NameLookup.h"
#include "WholeFile.h"

#include <QFileInfo>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QTimer>

namespace {

/// Far above any real news page.
constexpr qint64 maxPageSize = qint64{4} << 20;

/// What every real news page holds, and an error page of some server between does not.
constexpr auto mark = "GX-7100";

} // namespace

NewsUpdater::NewsUpdater(const QString& url, const QString& localFile, QObject* parent,
                         std::chrono::milliseconds pause, web::Reach reach)
    : QThread(parent), m_url(url), m_localFile(localFile), m_pause(pause), m_reach(reach) {}

NewsUpdater::~NewsUpdater() {
    requestInterruption();
    quit();
    wait();
}

void NewsUpdater::fetch() {
    const QUrl address(m_url);
    if (!web::mayBeAsked(address))
        return;
    QNetworkAccessManager manager;
    connect(&manager, &QNetworkAccessManager::finished, this, &NewsUpdater::handleNetworkData);
    const NameLookup lookup(address.host(QUrl::FullyEncoded), m_reach.patience, m_reach.resolve);
    connect(&lookup, &NameLookup::finished, &manager, [this, &manager, &address](bool found) {
        if (found)
            web::limitSize(manager.get(web::request(address, m_reach.patience)), maxPageSize);
        else
            exit(0);
    });
    exec();
}

void NewsUpdater::run() {
    fetch();
    if (m_changed && !isInterruptionRequested()) {
        QTimer pause;
        pause.setSingleShot(true);
        connect(&pause, &QTimer::timeout, &pause, [] { QThread::currentThread()->quit(); });
        pause.start(m_pause);
        exec();
    }
    emit finished(m_changed ? 1 : 0);
}

void NewsUpdater::handleNetworkData(QNetworkReply* reply) {
    if (reply->error() == QNetworkReply::NoError) {
        const QByteArray page = reply->readAll();
        // The size is the only test: a page edited to exactly the old size counts as the old one.
        if (QFileInfo(m_localFile).size() != page.size() && page.contains(mark))
            m_changed = wholefile::write(m_localFile, page).isEmpty();
    }
    reply->deleteLater();
    exit(0);
}
