#include "FileSizeLimit.h"
#include "HttpServer.h"
#include "NewsUpdater.h"
#include "TestEnvironment.h"
#include "TlsTrust.h"
#include "UpdateScene.h"

#include <QDir>
#include <QFile>
#include <QSemaphore>

using std::chrono::milliseconds;

namespace {

// A resolver that has been asked, and what it waits for: it may outlive its test.
QSemaphore isAsked;
QSemaphore mayAnswer;

} // namespace

class NewsUpdaterTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_server = std::make_unique<HttpServer>();
        QFile::remove(m_file);
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
        QTest::newRow("chunked") << QByteArray("old")
                                 << QByteArray(
                                        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                                        "3\r\n<p>\r\n8\r\nGX-7100 \r\n8\r\nnews</p>\r\n0\r\n\r\n")
                                 << page << 1;
        QTest::newRow("nothing") << QByteArray("old") << HttpServer::ok("") << QByteArray("old")
                                 << 0;
        QTest::newRow("cut in a chunk")
            << QByteArray("old")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n99\r\nGX-7100")
            << QByteArray("old") << 0;
        QTest::newRow("no answer") << QByteArray("old") << QByteArray() << QByteArray("old") << 0;
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

    void aSlowServerIsWaitedFor() {
        m_server->answerSlowly("/news", HttpServer::ok("<p>GX-7100</p>"));
        NewsUpdater updater(m_server->url(QStringLiteral("/news")), m_file, nullptr,
                            milliseconds(1));
        QCOMPARE(run(updater), QList<int>{1});
        QCOMPARE(contents(), QByteArray("<p>GX-7100</p>"));
    }

    void aRedirectIsFollowed() {
        m_server->redirect("/news", "/elsewhere");
        m_server->answer("/elsewhere", "GX-7100");
        NewsUpdater updater(m_server->url(QStringLiteral("/news")), m_file, nullptr,
                            milliseconds(1));
        QCOMPARE(run(updater), QList<int>{1});
        QCOMPARE(contents(), QByteArray("GX-7100"));
    }

    void aSilentServerIsGivenUp() {
        UpdateScene::write(m_file, "old");
        m_server->keepSilent("/news");
        NewsUpdater updater(m_server->url(QStringLiteral("/news")), m_file, nullptr,
                            milliseconds(1), web::Reach{.patience = milliseconds(50)});
        QCOMPARE(run(updater), QList<int>{0});
        QCOMPARE(contents(), QByteArray("old"));
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

    void aServerWithoutAddressIsNotAsked() {
        NewsUpdater updater(QStringLiteral("http://downloads.vestra.example/news"), m_file, nullptr,
                            milliseconds(1),
                            web::Reach{.resolve = [](const std::string&) { return false; }});
        QCOMPARE(run(updater), QList<int>{0});
        QVERIFY(!QFile::exists(m_file));
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

    void quittingEndsAFetchUnderWay() {
        m_server->keepSilent("/news");
        auto updater = std::make_unique<NewsUpdater>(m_server->url(QStringLiteral("/news")), m_file,
                                                     nullptr, milliseconds(1),
                                                     web::Reach{.patience = std::chrono::hours(1)});
        updater->start();
        QTRY_COMPARE_WITH_TIMEOUT(m_server->requests().size(), 1, 20000);
        updater.reset();
    }

    void quittingDoesNotWaitForTheResolver() {
        auto updater = std::make_unique<NewsUpdater>(
            QStringLiteral("http://downloads.vestra.example/news"), m_file, nullptr,
            milliseconds(1),
            web::Reach{.patience = std::chrono::hours(1), .resolve = [](const std::string&) {
                           isAsked.release();
                           mayAnswer.acquire();
                           return true;
                       }});
        updater->start();
        QVERIFY(isAsked.tryAcquire(1, 20000));
        updater.reset();
        mayAnswer.release();
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

private:
    /// Runs a fetch to its end; what it announced, as it arrived on this thread.
    QList<int> run(NewsUpdater& updater) {
        QList<int> announced;
        connect(&updater, qOverload<int>(&NewsUpdater::finished), this,
                [&announced](int changed) { announced.append(changed); });
        updater.start();
        [&announced] { QTRY_VERIFY_WITH_TIMEOUT(!announced.isEmpty(), 20000); }();
        return announced;
    }

    QByteArray contents() const {
        QFile file(m_file);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    std::unique_ptr<HttpServer> m_server;
    QString m_file =
        QDir::tempPath() + QStringLiteral("/news-%1.html").arg(QCoreApplication::applicationPid());
};

int main(int argc, char** argv) {
    return runTest<NewsUpdaterTest>(argc, argv);
}

#include "test_news_updater.moc"
