#pragma once

#include "WebRequest.h"

#include <QString>
#include <QThread>

#include <atomic>
#include <chrono>

class QNetworkReply;

/// Fetches the maker's news page once, on a thread of its own, and keeps a copy in a local file.
///
/// The object belongs to the GUI thread, and the page is checked and stored there. Nothing is shown
/// and nothing is said when there is no network. Destruction ends a fetch under way at once.
class NewsUpdater : public QThread {
    Q_OBJECT

public:
    /// `pause` is how long a changed page waits before it is announced, so that its window does not
    /// open into the start of the program.
    NewsUpdater(const QString& url, const QString& localFile, QObject* parent,
                std::chrono::milliseconds pause = std::chrono::seconds(4), web::Reach reach = {});
    ~NewsUpdater() override;

    void run() override;

public slots:
    void handleNetworkData(QNetworkReply* reply);

signals:
    /// The fetch has ended; non-zero when the local file has changed. Emitted on the worker thread.
    void finished(int changed);

private:
    void fetch();

    QString m_url;
    QString m_localFile;
    std::atomic_bool m_changed = false;
    std::chrono::milliseconds m_pause;
    web::Reach m_reach;
};
