#include "HttpServer.h"
#include "TestEnvironment.h"
#include "UpdateWindow.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QSignalSpy>
#include <QTimer>
#include <QToolButton>

namespace {

constexpr auto indexPath = "/projects/7100/files.txt";

QByteArray offer(const QByteArray& version, const QByteArray& fileName) {
    return "other\t1\tx\tother.dmg\ntag\t" + version + "\tx\t" + fileName + "\n";
}

} // namespace

class UpdateWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_server = std::make_unique<HttpServer>();
        m_boxes.clear();
        m_answer = QMessageBox::No;
        QDir(downloads()).removeRecursively();
        QDir().mkpath(downloads());
        connect(&m_watch, &QTimer::timeout, this, &UpdateWindowTest::answerBox,
                Qt::UniqueConnection);
        m_watch.start(1);
    }

    void cleanup() { m_watch.stop(); }

    void saysWhatTheServerOffers_data() {
        QTest::addColumn<QByteArray>("index");
        QTest::addColumn<QString>("version");
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("download");

        const QString failed = QStringLiteral("Error accessing server. Please try later.");
        QTest::newRow("newer") << HttpServer::ok(offer("2013.3", "a.dmg"))
                               << "A new version (2013.3) is available"
                               << "" << true;
        QTest::newRow("newer by its text")
            << HttpServer::ok(offer("2013.20", "a.dmg")) << "A new version (2013.20) is available"
            << "" << true;
        QTest::newRow("older") << HttpServer::ok(offer("2013.1", "a.dmg"))
                               << "The current release is still 2013.1"
                               << "" << false;
        QTest::newRow("same") << HttpServer::ok(offer("2013.2", "a.dmg"))
                              << "Your GX-7100 Apps are up to date"
                              << "" << false;
        QTest::newRow("the last line counts")
            << HttpServer::ok(offer("2013.3", "a.dmg") + offer("2013.1", "b.dmg"))
            << "The current release is still 2013.1"
            << "" << false;
        QTest::newRow("markup stays text") << HttpServer::ok(offer("9999<b>x", "a.dmg"))
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
        m_server->answerRaw(indexPath, index);

        UpdateWindow window(base(), QStringLiteral("tag"), QStringLiteral("2013.2"), nullptr);
        QVERIFY(versionText(window).contains(QStringLiteral("checking...")));
        QTRY_VERIFY_WITH_TIMEOUT(!versionText(window).contains(QStringLiteral("checking...")),
                                 20000);
        QVERIFY(versionText(window).contains(
            QStringLiteral("<b><u>GX-7100 Apps</u></b> Your version is 2013.2")));
        QVERIFY2(versionText(window).contains(u'>' + version + u'<'),
                 qPrintable(versionText(window)));
        QCOMPARE(statusText(window), status);
        QCOMPARE(button(window, QStringLiteral("Download"))->isEnabled(), download);
    }

    void aSilentServerIsGivenUp() {
        m_server->keepSilent(indexPath);
        UpdateWindow window(base(), QStringLiteral("tag"), QStringLiteral("2013.2"), nullptr,
                            std::chrono::milliseconds(50));
        QTRY_COMPARE_WITH_TIMEOUT(
            statusText(window), QStringLiteral("Error accessing server. Please try later."), 20000);
    }

    void onlyWebAddressesAreAsked() {
        UpdateWindow window(QStringLiteral("file:///etc/"), QStringLiteral("tag"),
                            QStringLiteral("2013.2"), nullptr);
        QCOMPARE(statusText(window), QStringLiteral("Error accessing server. Please try later."));
    }

    void aRedirectIsFollowed() {
        m_server->answerRaw(indexPath, "HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\n"
                                       "Content-Length: 0\r\nConnection: close\r\n\r\n");
        m_server->answer("/elsewhere", offer("2013.3", "a.dmg"));
        UpdateWindow window(base(), QStringLiteral("tag"), QStringLiteral("2013.2"), nullptr);
        QTRY_VERIFY_WITH_TIMEOUT(versionText(window).contains(QStringLiteral("(2013.3)")), 20000);
    }

    void aRedirectToAFileIsNot() {
        m_server->answerRaw(indexPath, "HTTP/1.1 302 Found\r\nLocation: file:///etc/hostname\r\n"
                                       "Content-Length: 0\r\nConnection: close\r\n\r\n");
        UpdateWindow window(base(), QStringLiteral("tag"), QStringLiteral("2013.2"), nullptr);
        QTRY_COMPARE_WITH_TIMEOUT(
            statusText(window), QStringLiteral("Error accessing server. Please try later."), 20000);
    }

    void downloadsAndOffers() {
        const QByteArray installer(300000, 'i');
        const auto window = offered("GX 7100#2.dmg");
        m_server->answer("/projects/7100/GX%207100%232.dmg", installer);
        button(*window, QStringLiteral("Download"))->click();

        const QString path = downloads() + QStringLiteral("/GX 7100#2.dmg");
        QCOMPARE(statusText(*window), QStringLiteral("Stored in ") + path);
        QCOMPARE(contents(path), installer);
        QCOMPARE(entries().size(), 1);
        QCOMPARE(m_boxes, QStringList{installQuestion()});
        QVERIFY(!window->installStarted());
    }

    void aFailedDownloadLeavesNothingAndStillOffers_data() {
        QTest::addColumn<QByteArray>("answer");

        QTest::newRow("not found")
            << QByteArray("HTTP/1.1 404 No\r\nContent-Length: 4\r\n\r\ngone");
        QTest::newRow("truncated")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + QByteArray(999, 'x'));
        QTest::newRow("no answer at all") << QByteArray("");
        QTest::newRow("broken chunks")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n9\r\nabc");
    }

    void aFailedDownloadLeavesNothingAndStillOffers() {
        QFETCH(QByteArray, answer);
        const auto window = offered("a.dmg");
        m_server->answerRaw("/projects/7100/a.dmg", answer);
        button(*window, QStringLiteral("Download"))->click();

        QCOMPARE(statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(entries().isEmpty());
        QCOMPARE(m_boxes, QStringList{installQuestion()});
    }

    void anEmptyInstallerIsStoredToo() {
        const auto window = offered("a.dmg");
        m_server->answer("/projects/7100/a.dmg", "");
        button(*window, QStringLiteral("Download"))->click();
        QVERIFY(QFile::exists(downloads() + QStringLiteral("/a.dmg")));
    }

    void cancellingRemovesTheRest() {
        const auto window = offered("a.dmg");
        m_server->keepSilent("/projects/7100/a.dmg");
        QTimer cancel;
        connect(&cancel, &QTimer::timeout, this, [&window] {
            auto* const progress = window->findChild<QProgressDialog*>();
            if (progress->isVisible()) {
                QCOMPARE(progress->labelText(), QStringLiteral("Downloading a.dmg..."));
                progress->findChild<QPushButton*>()->click();
            }
        });
        cancel.start(1);
        button(*window, QStringLiteral("Download"))->click();
        cancel.stop();
        QCOMPARE(statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(entries().isEmpty());
        QCOMPARE(m_boxes, QStringList{installQuestion()});
    }

    void aFileThatIsThereIsOfferedAsItIs() {
        write(downloads() + QStringLiteral("/a.dmg"), "old");
        const auto window = offered("a.dmg");
        button(*window, QStringLiteral("Download"))->click();

        QCOMPARE(contents(downloads() + QStringLiteral("/a.dmg")), QByteArray("old"));
        QCOMPARE(m_boxes,
                 (QStringList{QStringLiteral("Download|a.dmg is already at %1.").arg(downloads()),
                              installQuestion()}));
        QVERIFY(!m_server->requests().contains("/projects/7100/a.dmg"));
    }

    void aFolderThatCannotBeWrittenIsTold() {
        const auto window = offered("a.dmg");
        QDir(downloads()).removeRecursively();
        button(*window, QStringLiteral("Download"))->click();
        QCOMPARE(m_boxes.size(), 1);
        QVERIFY2(
            m_boxes.first().startsWith(QStringLiteral("Download|Unable to save the file a.dmg: ")),
            qPrintable(m_boxes.first()));
        QVERIFY(!m_server->requests().contains("/projects/7100/a.dmg"));
    }

    void aNameThatLeavesTheFolderIsRefused() {
        const auto window = offered("../a.dmg");
        button(*window, QStringLiteral("Download"))->click();
        QCOMPARE(statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(m_boxes.isEmpty());
        QCOMPARE(m_server->requests().size(), 1);
    }

    void whatIsNoInstallerIsNotOffered() {
        const auto window = offered("a.deb");
        m_server->answer("/projects/7100/a.deb", "package");
        button(*window, QStringLiteral("Download"))->click();
        QVERIFY(statusText(*window).startsWith(QStringLiteral("Stored in ")));
        QVERIFY(m_boxes.isEmpty());
        QVERIFY(!window->isNewFV2200(QStringLiteral("a.deb")));
        QVERIFY(window->isNewFV2200(QStringLiteral("a.exe")));
        QVERIFY(!window->isNewFV2200(QStringLiteral("a.EXE")));
    }

    void yesStartsTheInstallerAndClosesTheDialog() {
        // The name without ".exe" is what is started; here a script that leaves a mark.
        const QString mark = downloads() + QStringLiteral("/started");
        const QString script = downloads() + QStringLiteral("/set up");
        write(script, "#!/bin/sh\ntouch '" + QFile::encodeName(mark) + "'\n");
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const auto window = offered("set up.exe");
        m_server->answer("/projects/7100/set%20up.exe", "x");
        m_answer = QMessageBox::Yes;
        window->show();
        button(*window, QStringLiteral("Download"))->click();

        QVERIFY(window->installStarted());
        QVERIFY(!window->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(mark), 20000);
    }

    void aLargeDownloadIsStreamed() {
        const auto window = offered("a.dmg");
        const QByteArray installer(48 << 20, 'L');
        m_server->answer("/projects/7100/a.dmg", installer);
        button(*window, QStringLiteral("Download"))->click();
        QCOMPARE(QFile(downloads() + QStringLiteral("/a.dmg")).size(), qint64{48} << 20);
    }

    void theArrowsStandIdleAndHidden() {
        UpdateWindow window(base(), QStringLiteral("tag"), QStringLiteral("2013.2"), nullptr);
        const auto arrows = window.findChildren<QToolButton*>();
        QCOMPARE(arrows.size(), 2);
        for (const QToolButton* const arrow : arrows)
            QVERIFY(!arrow->isEnabled() && arrow->isHidden());
        QCOMPARE(window.sizeHint(), QSize(400, 100));
        QCOMPARE(window.windowTitle(), QStringLiteral("Checking for new software"));
    }

private:
    static QString downloads() { return QDir::homePath() + QStringLiteral("/Downloads"); }
    static QStringList entries() {
        return QDir(downloads()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QString installQuestion() {
        return QStringLiteral("%1|Install this now?|Click Yes to shutdown %1 and install the new "
                              "version.")
            .arg(QCoreApplication::applicationName());
    }

    QString base() const { return m_server->url(QStringLiteral("/projects/7100/")); }

    static QByteArray contents(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    static void write(const QString& path, const QByteArray& bytes) {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write(bytes), bytes.size());
    }

    static QString versionText(const UpdateWindow& window) { return label(window, Qt::RichText); }
    static QString statusText(const UpdateWindow& window) { return label(window, Qt::PlainText); }
    static QString label(const UpdateWindow& window, Qt::TextFormat format) {
        for (const QLabel* const label :
             window.findChildren<QLabel*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (label->textFormat() == format)
                return label->text();
        }
        return QStringLiteral("no label");
    }

    static QPushButton* button(const UpdateWindow& window, const QString& text) {
        for (QPushButton* const button :
             window.findChildren<QPushButton*>(QString(), Qt::FindDirectChildrenOnly)) {
            if (button->text() == text)
                return button;
        }
        return nullptr;
    }

    /// A window that has just been offered the newer version 2013.3 in the file `fileName`.
    std::unique_ptr<UpdateWindow> offered(const QByteArray& fileName) {
        m_server->answer(indexPath, offer("2013.3", fileName));
        auto window = std::make_unique<UpdateWindow>(base(), QStringLiteral("tag"),
                                                     QStringLiteral("2013.2"), nullptr);
        const QPushButton* const download = button(*window, QStringLiteral("Download"));
        [download] { QTRY_VERIFY_WITH_TIMEOUT(download->isEnabled(), 20000); }();
        return window;
    }

    void answerBox() {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box || !box->isVisible())
            return;
        QStringList texts{box->windowTitle(), box->text()};
        if (!box->informativeText().isEmpty()) {
            texts.append(box->informativeText());
            QCOMPARE(box->defaultButton(), box->button(QMessageBox::No));
        }
        m_boxes.append(texts.join(u'|'));
        const bool question = box->button(QMessageBox::Yes) != nullptr;
        box->button(question ? m_answer : QMessageBox::Ok)->click();
    }

    std::unique_ptr<HttpServer> m_server;
    QTimer m_watch;
    QStringList m_boxes;
    QMessageBox::StandardButton m_answer = QMessageBox::No;
};

int main(int argc, char** argv) {
    return runTest<UpdateWindowTest>(argc, argv);
}

#include "test_update_window.moc"
