#include "TestEnvironment.h"
#include "TlsTrust.h"
#include "UpdateScene.h"

#include <QLabel>
#include <QPushButton>
#include <QToolButton>

namespace {

constexpr auto indexPath = "/projects/7100/files.txt";
constexpr int patience = 20000;

const QString failed = QStringLiteral("Error accessing server. Please try later.");

} // namespace

class UpdateWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<UpdateScene>(); }

    void saysWhatTheServerOffers_data() {
        QTest::addColumn<QByteArray>("index");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("download");

        QTest::newRow("newer") << HttpServer::ok(UpdateScene::index("2013.3", "a.dmg"))
                               << "A new version (2013.3) is available"
                               << "" << true;
        QTest::newRow("newer by its text") << HttpServer::ok(UpdateScene::index("2013.20", "a.dmg"))
                                           << "A new version (2013.20) is available"
                                           << "" << true;
        QTest::newRow("older") << HttpServer::ok(UpdateScene::index("2013.1", "a.dmg"))
                               << "The current release is still 2013.1"
                               << "" << false;
        QTest::newRow("same") << HttpServer::ok(UpdateScene::index("2013.2", "a.dmg"))
                              << "Your GX-7100 Apps are up to date"
                              << "" << false;
        QTest::newRow("the last line counts")
            << HttpServer::ok(UpdateScene::index("2013.3", "a.dmg") +
                              UpdateScene::index("2013.1", "b.dmg"))
            << "The current release is still 2013.1"
            << "" << false;
        QTest::newRow("markup stays text")
            << HttpServer::ok(UpdateScene::index("9999<b>x", "a.dmg"))
            << "A new version (9999&lt;b&gt;x) is available"
            << "" << true;
        QTest::newRow("no line for us")
            << HttpServer::ok("other\t2014\tx\ta.dmg\n") << "" << failed << false;
        QTest::newRow("empty") << HttpServer::ok("") << "" << failed << false;
        QTest::newRow("not found")
            << QByteArray("HTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n") << "" << failed << false;
        QTest::newRow("truncated")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 999\r\n\r\ntag\t2014\tx\ta.dmg\n")
            << "" << failed << false;
        QTest::newRow("not HTTP") << QByteArray("220 mail server\r\n") << "" << failed << false;
        QTest::newRow("chunked")
            << QByteArray(
                   "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\nConnection: close\r\n\r\n"
                   "6\r\ntag\t20\r\nd\r\n13.3\tx\ta.dmg\n\r\n0\r\n\r\n")
            << "A new version (2013.3) is available"
            << "" << true;
        QTest::newRow("endless") << HttpServer::ok(QByteArray(3 << 20, 'x')) << "" << failed
                                 << false;
    }

    void saysWhatTheServerOffers() {
        QFETCH(QByteArray, index);
        QFETCH(QString, version);
        QFETCH(QString, status);
        QFETCH(bool, download);
        m_scene->server().answerRaw(indexPath, index);

        const auto window = m_scene->window();
        QVERIFY(UpdateScene::versionText(*window).contains(QStringLiteral("checking...")));
        QTRY_VERIFY_WITH_TIMEOUT(
            !UpdateScene::versionText(*window).contains(QStringLiteral("checking...")), 20000);
        QVERIFY(UpdateScene::versionText(*window).contains(
            QStringLiteral("<b><u>GX-7100 Apps</u></b> Your version is 2013.2")));
        QVERIFY2(UpdateScene::versionText(*window).contains(u'>' + version + u'<'),
                 qPrintable(UpdateScene::versionText(*window)));
        QCOMPARE(UpdateScene::statusText(*window), status);
        QCOMPARE(UpdateScene::button(*window, QStringLiteral("Download"))->isEnabled(), download);
    }

    void everyStatusIsSeenWhole_data() {
        QTest::addColumn<QByteArray>("index");

        QTest::newRow("nothing for us") << QByteArray();
        QTest::newRow("a new version") << UpdateScene::index("2013.3", "a.dmg");
    }

    void everyStatusIsSeenWhole() {
        QFETCH(QByteArray, index);
        m_scene->server().answer(indexPath, index);
        const auto window = m_scene->window();
        window->show();
        QTRY_VERIFY_WITH_TIMEOUT(
            !UpdateScene::versionText(*window).contains(QStringLiteral("checking...")), patience);
        if (!index.isEmpty()) {
            m_scene->server().answer("/projects/7100/a.dmg", "installer");
            UpdateScene::clickDownload(*window);
        }
        QCoreApplication::processEvents();
        const QLabel* const label = UpdateScene::statusLabel(*window);
        QVERIFY(!label->text().isEmpty());
        QVERIFY2(label->heightForWidth(label->width()) <= label->height(),
                 qPrintable(QStringLiteral("%1 wide, %2 high: %3")
                                .arg(label->width())
                                .arg(label->height())
                                .arg(label->text())));
        QCOMPARE(window->width(), 400);
    }

    void aSilentServerIsGivenUp() {
        m_scene->server().keepSilent(indexPath);
        const auto window = m_scene->window({.patience = std::chrono::milliseconds(50)});
        QTRY_COMPARE_WITH_TIMEOUT(UpdateScene::statusText(*window), failed, patience);
    }

    void onlyWebAddressesAreAsked() {
        UpdateWindow window(QStringLiteral("file:///etc/"), QStringLiteral("tag"),
                            QStringLiteral("2013.2"), nullptr);
        QCOMPARE(UpdateScene::statusText(window), failed);
    }

    void theLabelIsRichTextOfTwoParagraphs() {
        m_scene->server().answer(indexPath, UpdateScene::index("2013.1", "a.dmg"));
        const auto window = m_scene->window();
        QTRY_COMPARE_WITH_TIMEOUT(
            UpdateScene::versionText(*window),
            QStringLiteral("<p style=\" margin-top:0px; margin-bottom:0px;\"><b><u>GX-7100 Apps"
                           "</u></b> Your version is 2013.2</p><p style=\" margin-top:0px; "
                           "margin-bottom:0px;\">The current release is still 2013.1</p>"),
            patience);
    }

    void aServerWithoutAddressIsNotAsked() {
        const auto window = std::make_unique<UpdateWindow>(
            QStringLiteral("http://downloads.vestra.example/"), QStringLiteral("tag"),
            QStringLiteral("2013.2"), nullptr, web::Reach{.resolve = [](const std::string& host) {
                return host != "downloads.vestra.example";
            }});
        QTRY_COMPARE_WITH_TIMEOUT(UpdateScene::statusText(*window), failed, patience);
    }

    void aSlowServerIsWaitedFor() {
        m_scene->server().answerSlowly(indexPath,
                                       HttpServer::ok(UpdateScene::index("2013.3", "a.dmg")));
        const auto window = m_scene->window();
        QTRY_VERIFY_WITH_TIMEOUT(UpdateScene::versionText(*window).contains(u"(2013.3)"), patience);
    }

    void redirects_data() {
        QTest::addColumn<QByteArray>("location");
        QTest::addColumn<bool>("followed");

        QTest::newRow("on the server") << QByteArray("/elsewhere") << true;
        QTest::newRow("a local file") << QByteArray("file:///etc/hostname") << false;
        QTest::newRow("in a circle") << QByteArray(indexPath) << false;
        QTest::newRow("nowhere") << QByteArray("http://") << false;
    }

    void redirects() {
        QFETCH(QByteArray, location);
        QFETCH(bool, followed);
        m_scene->server().redirect(indexPath, location);
        m_scene->server().answer("/elsewhere", UpdateScene::index("2013.3", "a.dmg"));
        const auto window = m_scene->window();
        QTRY_COMPARE_WITH_TIMEOUT(UpdateScene::versionText(*window).contains(u"(2013.3)"), followed,
                                  patience);
        QTRY_COMPARE_WITH_TIMEOUT(UpdateScene::statusText(*window), followed ? QString() : failed,
                                  patience);
    }

    void aSecureAddressNeverLeadsToAnInsecureOne() {
        const TlsTrust trust;
        QVERIFY(trust.isValid());
        HttpServer insecure;
        insecure.answer("/files.txt", UpdateScene::index("2013.3", "a.dmg"));
        UpdateScene scene(std::make_unique<HttpServer>(trust.server(), QStringLiteral("https")));
        scene.server().redirect(indexPath, insecure.url(QStringLiteral("/files.txt")).toLatin1());
        const auto refused = scene.window();
        QTRY_COMPARE_WITH_TIMEOUT(UpdateScene::statusText(*refused), failed, patience);
        QCOMPARE(scene.server().requests(), QList<QByteArray>{indexPath});
        QVERIFY(insecure.requests().isEmpty());

        scene.server().redirect(indexPath, "/elsewhere");
        scene.server().answer("/elsewhere", UpdateScene::index("2013.3", "a.dmg"));
        const auto followed = scene.window();
        QTRY_VERIFY_WITH_TIMEOUT(UpdateScene::versionText(*followed).contains(u"(2013.3)"),
                                 patience);
    }

    void aCertificateThatNobodyVouchesForIsRefused() {
        std::unique_ptr<QTcpServer> server;
        {
            const TlsTrust trust;
            server = trust.server();
        }
        UpdateScene scene(std::make_unique<HttpServer>(std::move(server), QStringLiteral("https")));
        scene.server().answer(indexPath, UpdateScene::index("2013.3", "a.dmg"));
        const auto window = scene.window();
        QTRY_COMPARE_WITH_TIMEOUT(UpdateScene::statusText(*window), failed, patience);
        QVERIFY(scene.server().requests().isEmpty());
    }

    void doneClosesWhileTheServerIsAsked() {
        m_scene->server().keepSilent(indexPath);
        auto window = m_scene->window();
        QTimer::singleShot(0, window.get(), [&window] {
            UpdateScene::button(*window, QStringLiteral("Done"))->click();
        });
        window->exec();
        QVERIFY(!window->installStarted());
        window.reset();
        // Nothing of it is left that could still answer.
        QCoreApplication::processEvents();
        QVERIFY(m_scene->boxes().isEmpty());
    }

    void theArrowsStandIdleAndHidden() {
        const auto window = m_scene->window();
        const auto arrows = window->findChildren<QToolButton*>();
        QCOMPARE(arrows.size(), 2);
        for (const QToolButton* const arrow : arrows)
            QVERIFY(!arrow->isEnabled() && arrow->isHidden());
        QCOMPARE(window->sizeHint(), QSize(400, 100));
        QCOMPARE(window->windowTitle(), QStringLiteral("Checking for new software"));
    }

private:
    std::unique_ptr<UpdateScene> m_scene;
};

int main(int argc, char** argv) {
    return runTest<UpdateWindowTest>(argc, argv);
}

#include "test_update_window.moc"
