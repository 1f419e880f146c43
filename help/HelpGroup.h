#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>

class NewsBrowser;
class NewsUpdater;
class QMainWindow;
class QMenu;

/// Everything behind the group window's help menu: the manuals beside the application, the maker's
/// web site, the check for releases and the news page.
///
/// Owned by the group window; GUI thread.
class HelpGroup : public QObject {
    Q_OBJECT

public:
    /// `mainWindow` (not owned) is closed when an installer is to replace the application.
    HelpGroup(QMainWindow* mainWindow, QObject* parent);
    ~HelpGroup() override;

    /// Adds the help entries to `menu`.
    void buildHelpMenu(QMenu* menu);
    /// The platform and the running version, as the release index counts them.
    void setTagAndVer(const QString& tag, const QString& version);
    /// Starts to fetch the news page in the background; its window opens by itself when the page
    /// has changed. Says nothing when there is no network.
    void queryNews();
    /// The full path of a file beside the application's bundle.
    QString getLocalResource(const QString& name);

public slots:
    void doAboutQt();
    void showUserGuide();
    void show7100Manual();
    void gotovestra();
    void checkForUpdates();
    void checkForNews();
    void checkNewsAnchors(const QUrl& url);
    void testnews(int changed);

private:
    NewsBrowser& newsBrowser();
    void openLocal(const QString& name);
    void openOutside(const QUrl& url);

    QMainWindow* m_mainWindow;
    std::unique_ptr<NewsBrowser> m_newsBrowser;
    QString m_newsFile;
    QString m_tag;
    QString m_version;
    QString m_newsFolder;
    std::unique_ptr<NewsUpdater> m_updater;
};
