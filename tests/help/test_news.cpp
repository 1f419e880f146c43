#include "FileSizeLimit.h"
#include "HelpGroup.h"
#include "HelpLinks.h"
#include "HttpServer.h"
#include "NewsBrowser.h"
#include "NewsUpdater.h"
#include "PlatformTag.h"
#include "TestEnvironment.h"
#include "TlsTrust.h"
#include "UpdateScene.h"

#include <QAction>
#include <QBuffer>
#include <QDesktopServices>
#include <QDir>
#include <QFile>
#include <QMainWindow>
#include <QMenu>
#include <QStandardPaths>
#include <QTextBrowser>
#include <QTimer>

#include <sys/stat.h>

using std::chrono::milliseconds;

namespace {

/// Tells of every news window at the moment it is shown.
class ShowWatch : public QObject {
public:
    explicit ShowWatch(std::function<void(const QWidget&)> shown) : m_shown(std::move(shown)) {
        qApp->installEventFilter(this);
    }
    bool eventFilter(QObject* object, QEvent* event) override {
        const auto* const browser = qobject_cast<NewsBrowser*>(object);
        if (browser && event->type() == QEvent::Show)
            m_shown(*browser);
        return false;
    }

private:
    std::function<void(const QWidget&)> m_shown;
};

} // namespace

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
            UpdateScene::write(m_file, stored);
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
        UpdateScene::write(m_file, "old");
        NewsUpdater updater(QUrl::fromLocalFile(m_file).toString(), m_file + u'2', nullptr);
        QCOMPARE(run(updater), QList<int>{0});
        QVERIFY(!QFile::exists(m_file + u'2'));
    }

    void quittingEndsAFetchUnderWay() {
        m_server->keepSilent("/news");
        auto updater = std::make_unique<NewsUpdater>(m_server->url(QStringLiteral("/news")), m_file,
                                                     nullptr, milliseconds(1),
                                                     web::Reach{.patience = std::chrono::hours(1)});
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
                                std::chrono::hours(1),
                                web::Reach{.patience = std::chrono::hours(1)});
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

    void theNewsDoNotKeepTheProgramRunning() {
        newsSource.clear();
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.queryNews();
        window.show();
        help.checkForNews();
        QTimer::singleShot(0, &window, &QWidget::close);
        QTimer::singleShot(60000, &window, [] { QApplication::exit(1); });
        QCOMPARE(QApplication::exec(), 0);
    }

    void aFolderThatCannotBeMadeMeansNoNews() {
        newsSource = m_server->url(QStringLiteral("/news"));
        // A file stands where the folders should be.
        const QString cache = QDir(folder() + QStringLiteral("/..")).absolutePath();
        QDir().rmdir(cache);
        UpdateScene::write(cache, "in the way");
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.queryNews();
        help.checkForNews();
        QCOMPARE(newsWindow()->toPlainText(), QString());
        QFile::remove(cache);
        QVERIFY(m_server->requests().isEmpty());
    }

    void theNewsReadNoLocalFile_data() {
        QTest::addColumn<QByteArray>("element");

        QTest::newRow("image") << QByteArray("<img src=\"%1\">");
        QTest::newRow("image by address") << QByteArray("<img src=\"file://%1\">");
        QTest::newRow("style sheet") << QByteArray("<link rel=stylesheet href=\"%1\"/>");
    }

    void theNewsReadNoLocalFile() {
        QFETCH(QByteArray, element);
        // Whoever opens a pipe that nobody writes to waits for ever.
        const QString pipe = m_file + QStringLiteral(".pipe");
        QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
        NewsBrowser browser;
        browser.showPage(element.replace("%1", QFile::encodeName(pipe)) + "GX-7100");
        browser.show();
        QCoreApplication::processEvents();
        QVERIFY(browser.toPlainText().contains(QStringLiteral("GX-7100")));
        QFile::remove(pipe);
    }

    void anImageThePageCarriesIsShown() {
        QImage image(80, 80, QImage::Format_RGB32);
        image.fill(Qt::red);
        QByteArray png;
        QBuffer buffer(&png);
        image.save(&buffer, "png");
        NewsBrowser browser;
        browser.showPage("<img src=\"data:image/png;base64," + png.toBase64() + "\">");
        browser.resize(200, 200);
        QCOMPARE(browser.viewport()->grab().toImage().pixelColor(40, 40), QColor(Qt::red));
    }

    void aPageThatCannotBeLaidOutIsShownAsText() {
        NewsBrowser browser;
        const QByteArray page = "GX-7100" + QByteArray("<table><tr><td>").repeated(30);
        browser.showPage(page);
        QCOMPARE(browser.toPlainText(), QString::fromLatin1(page));
    }

    void newsThatOpenUnaskedTakeNoKeys() {
        newsSource.clear();
        QMainWindow window;
        HelpGroup help(&window, &window);
        QList<bool> activated;
        ShowWatch watch([&activated](const QWidget& shown) {
            activated.append(!shown.testAttribute(Qt::WA_ShowWithoutActivating));
        });
        help.testnews(1);
        newsWindow()->hide();
        help.checkForNews();
        QCOMPARE(activated, (QList<bool>{false, true}));
    }

    void aServerWithoutAddressIsNotAsked() {
        NewsUpdater updater(QStringLiteral("http://downloads.vestra.example/news"), m_file, nullptr,
                            milliseconds(1),
                            web::Reach{.resolve = [](const std::string&) { return false; }});
        QCOMPARE(run(updater), QList<int>{0});
        QVERIFY(!QFile::exists(m_file));
    }

    void aFullDiskKeepsTheOldPage() {
        UpdateScene::write(m_file, "GX-7100 of last week");
        m_server->answer("/news", "GX-7100 " + QByteArray(5000, 'x'));
        NewsUpdater updater(m_server->url(QStringLiteral("/news")), m_file, nullptr,
                            milliseconds(1));
        {
            const FileSizeLimit limit(1000);
            QCOMPARE(run(updater), QList<int>{0});
        }
        QCOMPARE(contents(), QByteArray("GX-7100 of last week"));
    }

    void aSecureAddressNeverLeadsToAnInsecureOne() {
        const TlsTrust trust;
        HttpServer insecure;
        insecure.answer("/news", "GX-7100");
        HttpServer secure(trust.server(), QStringLiteral("https"));
        secure.redirect("/news", insecure.url(QStringLiteral("/news")).toLatin1());
        NewsUpdater refused(secure.url(QStringLiteral("/news")), m_file, nullptr, milliseconds(1));
        QCOMPARE(run(refused), QList<int>{0});
        QCOMPARE(secure.requests().size(), 1);
        QVERIFY(insecure.requests().isEmpty());

        secure.answer("/news", "GX-7100");
        NewsUpdater stored(secure.url(QStringLiteral("/news")), m_file, nullptr, milliseconds(1));
        QCOMPARE(run(stored), QList<int>{1});
    }

    void anUnchangedPageOpensNothing() {
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.testnews(0);
        QVERIFY(!newsWindow());
    }

    void linksLeadToTheBrowserAndNowhereElse_data() {
        QTest::addColumn<QString>("link");
        QTest::addColumn<QString>("opened");

        QTest::newRow("secure") << QStringLiteral("https://www.vestra.example/a")
                                << QStringLiteral("https://www.vestra.example/a");
        QTest::newRow("mail") << QStringLiteral("mailto:news@vestra.example")
                              << QStringLiteral("mailto:news@vestra.example");
        QTest::newRow("from the page on") << QStringLiteral("v2.html#top")
                                          << QStringLiteral("https://vestra.example/n/v2.html#top");
        QTest::newRow("local file") << QStringLiteral("file:///etc/passwd") << QString();
        QTest::newRow("program") << QStringLiteral("javascript:alert(1)") << QString();
        QTest::newRow("nothing") << QStringLiteral("http:") << QString();
    }

    void linksLeadToTheBrowserAndNowhereElse() {
        QFETCH(QString, link);
        QFETCH(QString, opened);
        newsSource = QStringLiteral("https://vestra.example/n/summary.html");
        QMainWindow window;
        HelpGroup help(&window, &window);
        const QStringList schemes{QStringLiteral("https"), QStringLiteral("http"),
                                  QStringLiteral("mailto"), QStringLiteral("file"),
                                  QStringLiteral("javascript")};
        for (const QString& scheme : schemes)
            QDesktopServices::setUrlHandler(scheme, this, "take");
        help.checkNewsAnchors(QUrl(link));
        for (const QString& scheme : schemes)
            QDesktopServices::unsetUrlHandler(scheme);
        QCOMPARE(m_opened, opened.isEmpty() ? QList<QUrl>() : QList<QUrl>{QUrl(opened)});
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
