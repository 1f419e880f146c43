#pragma once

#include "HttpServer.h"
#include "UpdateWindow.h"

#include <QLabel>
#include <QMessageBox>
#include <QStringList>
#include <QTimer>

#include <memory>

/// What a test of the update dialog plays in: a server, a download folder that is empty, and a hand
/// that answers every message box as soon as it stands.
class UpdateScene : public QObject {
    Q_OBJECT

public:
    UpdateScene() : UpdateScene(std::make_unique<HttpServer>()) {}
    explicit UpdateScene(std::unique_ptr<HttpServer> server);

    HttpServer& server() { return *m_server; }
    /// The download area on the server.
    QString base() const { return m_server->url(QStringLiteral("/projects/7100/")); }

    /// A dialog of running version 2013.2 on platform "tag" that has just asked for the index.
    std::unique_ptr<UpdateWindow> window(web::Reach reach = {}) const;
    /// A dialog that has just been offered the newer version 2013.3 in the file `fileName`.
    std::unique_ptr<UpdateWindow> offered(const QByteArray& fileName, web::Reach reach = {});

    /// What is to be answered where Yes and No are offered; otherwise it is OK.
    void answerQuestions(QMessageBox::StandardButton button) { m_answer = button; }
    /// The boxes that stood so far: title, text and informative text joined by "|".
    QStringList boxes() const { return m_boxes; }

    static QString downloads();
    /// Everything in the download folder, hidden files too.
    static QStringList entries();
    static QByteArray contents(const QString& path);
    static void write(const QString& path, const QByteArray& bytes);

    /// The box that offers to install, as boxes() tells it.
    static QString installQuestion();
    /// A record of an index after one of another platform.
    static QByteArray index(const QByteArray& version, const QByteArray& fileName);
    static QString versionText(const UpdateWindow& window);
    static QString statusText(const UpdateWindow& window);
    static QLabel* statusLabel(const UpdateWindow& window);
    static QPushButton* button(const UpdateWindow& window, const QString& text);
    static void clickDownload(const UpdateWindow& window);

private:
    void answerBox();

    std::unique_ptr<HttpServer> m_server;
    QTimer m_watch;
    QStringList m_boxes;
    QMessageBox::StandardButton m_answer = QMessageBox::No;
};
