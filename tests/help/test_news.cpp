#include "HelpGroup.h"
#include "HelpLinks.h"
#include "HttpServer.h"
#include "NewsUpdater.h"
#include "PlatformTag.h"
#include "TestEnvironment.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QMenu>
#include <QStandardPaths>
#include <QTextBrowser>

using std::chrono::milliseconds;

class NewsTest : public QObject {
    Q_OBJECT

public slots:
    void take(const QUrl& url) { m_opened.append(url); }

private slots:
    void init() {
        m_server = std::make_unique<HttpServer>();
        m_opened.clear();
        QFile::remove(m_file);
        QDir(folder()).removeRecursively();
    }

    void storesAPageThatHasChanged_data() {
        QTest::addColumn<QByteArray>("stored");
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<QByteArray>("kept");
        QTest::addColumn<int>("changed");

        const QByteArray page = "<p>GX-7100 news</p>";
        QTest::newRow("first") << QByteArray() << HttpServer::ok(page) << page << 1;
        QTest::newRow("other size")
            << QByteArray("<p>GX-7100</p>") << HttpServer::ok(page) << page << 1;
        QTest::newRow("same size counts as the same")
            << QByteArray("<p>GX-7100 NEWS</p>") << HttpServer::ok(page)
            << QByteArray("<p>GX-7100 NEWS</p>") << 0;
        QTest::newRow("some other page")
            << QByteArray("old") << HttpServer::ok("<p>Log in here</p>") << QByteArray("old") << 0;
        QTest::newRow("not found")
            << QByteArray("old")
            << QByteArray("HTTP/1.1 404 No\r\nContent-Length: 7\r\n\r\nGX-7100")
            << QByteArray("old") << 0;
        QTest::newRow("truncated")
            << QByteArray("old")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nGX-7100")
            << QByteArray("old") << 0;
        QTest::newRow("far too large")
            << QByteArray("old") << HttpServer::ok("GX-7100" + QByteArray(9 << 20, ' '))
            << QByteArray("old") << 0;
    }

    void storesAPageThatHasChanged() {
        QFETCH(QByteArray, stored);
        QFETCH(QByteArray, answer);
        QFETCH(QByteArray, kept);
        QFETCH(int, changed);
        if (!stored.isEmpty())
            write(stored);
        m_server->answerRaw("/news", answer);
        NewsUpdater updater(m_server->url(QStringLiteral("/news")), m_file, nullptr,
                            milliseconds(1));
        QCOMPARE(run(updater), QList<int>{changed});
        QCOMPARE(contents(), kept);
    }

    void nothingIsSaidWithoutANetwork() {
        const QString nowhere = m_server->url(QStringLiteral("/news"));
        m_server.reset();
        NewsUpdater updater(nowhere, m_file, nullptr, milliseconds(1));
        QCOMPARE(run(updater), QList<int>{0});
        QVERIFY(!QFile::exists(m_file));
    }

    void anAddressThatIsNoWebAddressIsNotAsked() {
        write("old");
        NewsUpdater updater(QUrl::fromLocalFile(m_file).toString(), m_file + u'2', nullptr);
        QCOMPARE(run(updater), QList<int>{0});
        QVERIFY(!QFile::exists(m_file + u'2'));
    }

    void quittingEndsAFetchUnderWay() {
        m_server->keepSilent("/news");
        auto updater =
            std::make_unique<NewsUpdater>(m_server->url(QStringLiteral("/news")), m_file, nullptr,
                                          milliseconds(1), std::chrono::hours(1));
        updater->start();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, 20000);
        updater.reset();
    }

    void quittingEndsThePause() {
        m_server->answer("/news", "GX-7100");
        auto updater = std::make_unique<NewsUpdater>(m_server->url(QStringLiteral("/news")), m_file,
                                                     nullptr, std::chrono::hours(1));
        updater->start();
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_file), 20000);
        updater.reset();
    }

    void quittingBeforeTheThreadHasBegun() {
        for (int i = 0; i < 20; ++i) {
            NewsUpdater updater(m_server->url(QStringLiteral("/news")), m_file, nullptr,
                                std::chrono::hours(1), std::chrono::hours(1));
            m_server->keepSilent("/news");
            updater.start();
        }
    }

    void theMenuStandsInOrder() {
        QCoreApplication::setApplicationName(QStringLiteral("GX7100Group"));
        QMainWindow window;
        HelpGroup help(&window, &window);
        QMenu menu;
        help.buildHelpMenu(&menu);
        QStringList texts;
        for (const QAction* const action : menu.actions()) {
            texts.append(action->text());
            QVERIFY(action->shortcut().isEmpty());
        }
        QCOMPARE(texts, (QStringList{QStringLiteral("About Qt"),
                                     QStringLiteral("User Guide for GX7100Group"),
                                     QStringLiteral("GX-7100 Manual, ver 6.2"),
                                     QStringLiteral("Visit the VESTRA web site"),
                                     QStringLiteral("Check for Software updates"),
                                     QStringLiteral("Latest GX-7100 news")}));
    }

    void theManualsAreBesideTheBundle() {
        QCoreApplication::setApplicationName(QStringLiteral("GX7100Group"));
        QMainWindow window;
        HelpGroup help(&window, &window);
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take");
        help.showUserGuide();
        help.show7100Manual();
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));

        QDir above(QCoreApplication::applicationDirPath());
        QVERIFY(above.cd(QStringLiteral("../../..")));
        const QString start = QStringLiteral("file:///") + above.absolutePath();
        QCOMPARE(m_opened.value(0).toString(),
                 start + QStringLiteral("/GX7100Group_UserGuide.pdf"));
        QCOMPARE(m_opened.value(1).toString(),
                 start + QStringLiteral("/Using_the_GX-7100E-v6.2.pdf"));
    }

    void theWebSiteIsOpenedOutside() {
        QMainWindow window;
        HelpGroup help(&window, &window);
        QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "take");
        help.gotovestra();
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
        QCOMPARE(m_opened, QList<QUrl>{QUrl(webSite)});
    }

    void aNewPageOpensItsWindow() {
        m_server->answer("/news", "<html><body>GX-7100 <b>2.1</b> is out</body></html>");
        newsSource = m_server->url(QStringLiteral("/news"));
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.queryNews();
        QTRY_VERIFY_WITH_TIMEOUT(newsWindow() && newsWindow()->isVisible(), 30000);
        QCOMPARE(newsWindow()->toPlainText(), QStringLiteral("GX-7100 2.1 is out"));
        QCOMPARE(newsWindow()->windowTitle(), QStringLiteral("Latest GX-7100 News from VESTRA"));
        QCOMPARE(newsWindow()->size(), QSize(500, 300));
        QVERIFY(QFile::exists(folder() + QStringLiteral("/summary.html")));
    }

    void theLastCopyIsShownWithoutANetwork() {
        newsSource = m_server->url(QStringLiteral("/news"));
        QDir().mkpath(folder());
        QFile file(folder() + QStringLiteral("/summary.html"));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("GX-7100 of last week");
        file.close();
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.queryNews();
        help.checkForNews();
        QCOMPARE(newsWindow()->toPlainText(), QStringLiteral("GX-7100 of last week"));
    }

    void anEmptyPageBeforeAnyCopy() {
        newsSource = m_server->url(QStringLiteral("/news"));
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.queryNews();
        help.checkForNews();
        QCOMPARE(newsWindow()->toPlainText(), QString());
    }

    void anUnchangedPageOpensNothing() {
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.testnews(0);
        QVERIFY(!newsWindow());
    }

    void linksLeadToTheBrowserAndNowhereElse() {
        QMainWindow window;
        HelpGroup help(&window, &window);
        QDesktopServices::setUrlHandler(QStringLiteral("https"), this, "take");
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take");
        help.checkNewsAnchors(QUrl(QStringLiteral("https://www.vestra.example/a")));
        help.checkNewsAnchors(QUrl(QStringLiteral("file:///etc/passwd")));
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
        QDesktopServices::unsetUrlHandler(QStringLiteral("file"));
        QCOMPARE(m_opened, QList<QUrl>{QUrl(QStringLiteral("https://www.vestra.example/a"))});
    }

    void thisPlatformHasATag() {
#if defined(Q_OS_LINUX)
        QCOMPARE(platformTag(), QStringLiteral("apps_linux64"));
#endif
    }

private:
    static QString folder() {
        return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
               QStringLiteral("/com.vestra.7100");
    }

    /// Runs a fetch to its end; what it announced, as it arrived on this thread.
    QList<int> run(NewsUpdater& updater) {
        QList<int> announced;
        connect(&updater, qOverload<int>(&NewsUpdater::finished), this,
                [&announced](int changed) { announced.append(changed); });
        updater.start();
        [&announced] { QTRY_VERIFY_WITH_TIMEOUT(!announced.isEmpty(), 20000); }();
        return announced;
    }

    static QTextBrowser* newsWindow() {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const browser = qobject_cast<QTextBrowser*>(widget))
                return browser;
        }
        return nullptr;
    }

    void write(const QByteArray& bytes) {
        QFile file(m_file);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    QByteArray contents() const {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<HttpServer> m_server;
    QString m_file =
        QDir::tempPath() + QStringLiteral("/news-%1.html").arg(QCoreApplication::applicationPid());
    QList<QUrl> m_opened;
};

int main(int argc, char** argv) {
    return runTest<NewsTest>(argc, argv);
}

#include "test_news.moc"
