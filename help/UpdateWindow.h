#pragma once

#include "WebRequest.h"

#include <QDialog>
#include <QNetworkAccessManager>
#include <QPointer>
#include <QString>

#include <chrono>
#include <memory>

class QLabel;
class QNetworkReply;
class QProgressDialog;
class QPushButton;
class QTemporaryFile;
class QToolButton;
class QUrl;

/// The modal dialog that asks the maker's server for a newer release, downloads its installer and
/// starts it.
///
/// Used by the help menu, which runs it and afterwards closes the main window when
/// installStarted() says so. A download is written under another name in the download folder and
/// becomes the named file only when it is whole; a file that is already there is never touched.
/// GUI thread.
class UpdateWindow : public QDialog {
    Q_OBJECT

public:
    /// Sends the request for the index at once. `baseUrl` is the download area (http or https,
    /// ends in "/"), `tag` the platform as the index names it, `version` the running version.
    UpdateWindow(const QString& baseUrl, const QString& tag, const QString& version,
                 QWidget* parent, web::Reach reach = {});
    ~UpdateWindow() override;

    /// Whether an installer was started, so that the application is to make way for it.
    bool installStarted() const { return m_installStarted; }

    /// Shows the running version and, below it, `status`.
    void setFVLabel(const QString& status);
    /// 0: the same version, 1: a newer one is offered, 2: an older one.
    int compareVersion(QString current, QString offered);
    /// Whether a downloaded file of this name can be started as an installer.
    bool isNewFV2200(const QString& name);
    /// Asks, and on Yes starts the installer at `path`; whether it started.
    bool openTheUpdate(const QString& path);
    /// Asks whether to quit and install; true only for Yes.
    bool doShutDown();
    /// Downloads `fileName` into the download folder, or offers the file that is already there.
    void downloadFile(QPushButton* button, const QString& fileName);

    QSize sizeHint() const override;

public slots:
    void handleNetworkData(QNetworkReply* reply);
    void downloadFV();
    void doDone();
    void continueDownload();
    void updateDataTransferProgress(qint64 done, qint64 total);
    void manFinishDownload(QNetworkReply* reply);
    void cancelDownload();

private:
    void layOut();
    void askForIndex(const QUrl& address);
    void readIndex(const QByteArray& index);
    QNetworkReply* get(const QUrl& address);
    void tell(const QString& text);
    bool openOutput(const QString& fileName);
    void startDownload(QPushButton* button, const QString& fileName);
    bool storeDownload();
    void offerInstallation();
    void showStatus(const QString& status);
    void showServerError();

    bool m_installStarted = false;
    QLabel* m_versionLabel;
    QLabel* m_statusLabel;
    QPushButton* m_downloadButton;
    QPushButton* m_doneButton;
    QToolButton* m_leftArrow;
    QToolButton* m_rightArrow;
    std::unique_ptr<QProgressDialog> m_progress;
    web::Reach m_reach;
    QPointer<QNetworkReply> m_reply;
    std::unique_ptr<QTemporaryFile> m_output;
    QNetworkAccessManager m_manager;
    QString m_version;
    QString m_tag;
    QString m_fileName;
    QString m_downloadFolder;
    QString m_installerPath;
    QString m_baseUrl;
};
