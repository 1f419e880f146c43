#include "HelpGroup.h"

#include "HelpLinks.h"
#include "NewsBrowser.h"
#include "NewsUpdater.h"
#include "PlatformTag.h"
#include "UpdateWindow.h"

#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QMenu>
#include <QMessageBox>
#include <QStandardPaths>

namespace {

constexpr qint64 maxNewsSize = qint64{4} << 20;

/// The page in a local file; empty when there is none.
QByteArray readPage(const QString& path) {
    QFile file(path);
    return QFile::exists(path) && file.open(QIODevice::ReadOnly) ? file.read(maxNewsSize)
                                                                 : QByteArray();
}

} // namespace

HelpGroup::HelpGroup(QMainWindow* mainWindow, QObject* parent)
    : QObject(parent), m_mainWindow(mainWindow),
      m_newsFolder(QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
                   QStringLiteral("/com.vestra.7100")) {}

HelpGroup::~HelpGroup() = default;

void HelpGroup::buildHelpMenu(QMenu* menu) {
    const QString application = QCoreApplication::applicationName();
    const auto add = [this, menu](const QString& text, const QString& statusTip,
                                  void (HelpGroup::*slot)()) {
        menu->addAction(text, this, slot)->setStatusTip(statusTip);
    };
    add(tr("About Qt"), tr("Show the version of Qt"), &HelpGroup::doAboutQt);
    add(tr("User Guide for %1").arg(application), tr("Open the user guide"),
        &HelpGroup::showUserGuide);
    add(tr("GX-7100 Manual, ver 6.2"), tr("Open the manual of the instrument"),
        &HelpGroup::show7100Manual);
    add(tr("Visit the VESTRA web site"), tr("Open the web site in the browser"),
        &HelpGroup::gotovestra);
    add(tr("Check for Software updates"), tr("Ask the download server for a newer release"),
        &HelpGroup::checkForUpdates);
    add(tr("Latest GX-7100 news"), tr("Show the latest news"), &HelpGroup::checkForNews);
}

void HelpGroup::setTagAndVer(const QString& tag, const QString& version) {
    m_tag = tag;
    m_version = version;
}

QString HelpGroup::getLocalResource(const QString& name) {
    return QDir::cleanPath(QCoreApplication::applicationDirPath() + QStringLiteral("/../../../") +
                           name);
}

void HelpGroup::openLocal(const QString& name) {
    const QByteArray path = QUrl::toPercentEncoding(getLocalResource(name), "/:");
    openOutside(QUrl(QStringLiteral("file:///") + QString::fromLatin1(path)));
}

void HelpGroup::openOutside(const QUrl& url) {
    // What is missing is told by the program that opens it; that there is none, nobody else tells.
    if (!QDesktopServices::openUrl(url))
        QMessageBox::information(m_mainWindow, QCoreApplication::applicationName(),
                                 tr("There is no program here that opens %1.")
                                     .arg(url.toDisplayString(QUrl::PreferLocalFile)));
}

void HelpGroup::doAboutQt() {
    QMessageBox::aboutQt(m_mainWindow);
}

void HelpGroup::showUserGuide() {
    openLocal(QStringLiteral("%1_UserGuide.pdf").arg(QCoreApplication::applicationName()));
}

void HelpGroup::show7100Manual() {
    openLocal(QStringLiteral("Using_the_GX-7100E-v6.2.pdf"));
}

void HelpGroup::gotovestra() {
    openOutside(QUrl(webSite));
}

void HelpGroup::checkForUpdates() {
    UpdateWindow window(downloadSource, m_tag, m_version, m_mainWindow);
    window.exec();
    if (window.installStarted())
        m_mainWindow->close();
}

void HelpGroup::queryNews() {
    setTagAndVer(platformTag(), QStringLiteral("2013.2"));
    const QDir folder(m_newsFolder);
    if (!folder.exists() && !QDir().mkpath(m_newsFolder))
        return;
    m_newsFile = folder.absolutePath() + QStringLiteral("/summary.html");
    m_updater = std::make_unique<NewsUpdater>(newsSource, m_newsFile, nullptr);
    connect(m_updater.get(), qOverload<int>(&NewsUpdater::finished), this, &HelpGroup::testnews);
    m_updater->start(QThread::InheritPriority);
}

void HelpGroup::testnews(int changed) {
    if (changed == 0)
        return;
    // It opens unasked: what is being typed stays with the instruments.
    newsBrowser().setAttribute(Qt::WA_ShowWithoutActivating);
    checkForNews();
    newsBrowser().setAttribute(Qt::WA_ShowWithoutActivating, false);
}

NewsBrowser& HelpGroup::newsBrowser() {
    if (!m_newsBrowser) {
        m_newsBrowser = std::make_unique<NewsBrowser>();
        m_newsBrowser->setWindowTitle(tr("Latest GX-7100 News from VESTRA"));
        m_newsBrowser->setSearchPaths({m_newsFile});
        connect(m_newsBrowser.get(), &QTextBrowser::anchorClicked, this,
                &HelpGroup::checkNewsAnchors);
    }
    return *m_newsBrowser;
}

void HelpGroup::checkForNews() {
    NewsBrowser& browser = newsBrowser();
    browser.showPage(readPage(m_newsFile));
    browser.resize(500, 300);
    browser.show();
    if (browser.testAttribute(Qt::WA_ShowWithoutActivating))
        return;
    // It may stand behind the others.
    browser.raise();
    browser.activateWindow();
}

void HelpGroup::checkNewsAnchors(const QUrl& url) {
    const QUrl target = QUrl(newsSource).resolved(url);
    // The page comes from outside: it may send the operator to the web, not to local files.
    if (web::mayBeAsked(target) || target.scheme() == QLatin1String("mailto"))
        openOutside(target);
}
