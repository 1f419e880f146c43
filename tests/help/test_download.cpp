#include "FileSizeLimit.h"
#include "TestEnvironment.h"
#include "TlsTrust.h"
#include "UpdateScene.h"

#include <QDir>
#include <QFile>
#include <QLabel>
#include <QProgressDialog>
#include <QPushButton>
#include <QStandardPaths>

#include <functional>

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
// Sanitizers keep memory on purpose, and are slow.
constexpr qint64 largeDownload = qint64{20} << 20;
constexpr qint64 memoryForIt = qint64{1} << 40;
#else
constexpr qint64 largeDownload = qint64{300} << 20;
constexpr qint64 memoryForIt = qint64{24} << 20;
#endif

/// The most memory this process has held at once since a moment.
class ResidentMemory {
public:
    ResidentMemory() {
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        if (reset.open(QIODevice::WriteOnly))
            reset.write("5");
        reset.close();
        m_before = peak();
    }
    qint64 growth() const { return peak() - m_before; }

private:
    static qint64 peak() {
        QFile status(QStringLiteral("/proc/self/status"));
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray text = status.readAll();
        const qsizetype start = text.indexOf("VmHWM:") + 6;
        return text.mid(start, text.indexOf("kB", start) - start).trimmed().toLongLong() * 1024;
    }

    qint64 m_before = 0;
};

/// Does something once, as soon as the progress dialog of `window` stands and `condition` holds.
void whenDownloading(UpdateWindow& window, const std::function<bool()>& condition,
                     const std::function<void(QProgressDialog&)>& act) {
    auto* const progress = window.findChild<QProgressDialog*>();
    auto* const timer = new QTimer(&window);
    QObject::connect(timer, &QTimer::timeout, progress, [timer, progress, condition, act] {
        if (!progress->isVisible() || !condition())
            return;
        timer->stop();
        act(*progress);
    });
    timer->start(1);
}

} // namespace

class DownloadTest : public QObject {
    Q_OBJECT

private slots:
    void init() { m_scene = std::make_unique<UpdateScene>(); }

    void downloadsAndOffers() {
        const QByteArray installer(300000, 'i');
        const auto window = m_scene->offered("GX 7100#2.dmg");
        m_scene->server().answer("/projects/7100/GX%207100%232.dmg", installer);
        UpdateScene::clickDownload(*window);

        const QString path = UpdateScene::downloads() + QStringLiteral("/GX 7100#2.dmg");
        QCOMPARE(UpdateScene::statusText(*window), QStringLiteral("Stored in ") + path);
        QCOMPARE(UpdateScene::contents(path), installer);
        QCOMPARE(UpdateScene::entries().size(), 1);
        QCOMPARE(m_scene->boxes(), QStringList{UpdateScene::installQuestion()});
        QVERIFY(!window->installStarted());
    }

    void takesWhatAServerSends_data() {
        QTest::addColumn<QByteArray>("answer");
        QTest::addColumn<bool>("slowly");

        QTest::newRow("slowly") << HttpServer::ok("installer") << true;
        QTest::newRow("in chunks")
            << QByteArray("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                          "4\r\ninst\r\n5\r\naller\r\n0\r\n\r\n")
            << false;
        QTest::newRow("without telling its length")
            << QByteArray("HTTP/1.0 200 OK\r\n\r\ninstaller") << false;
        // What comes after the end it told is not part of it.
        QTest::newRow("more than it told")
            << QByteArray("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\ninstallerandmore") << false;
    }

    void takesWhatAServerSends() {
        QFETCH(QByteArray, answer);
        QFETCH(bool, slowly);
        const auto window = m_scene->offered("a.dmg");
        if (slowly)
            m_scene->server().answerSlowly("/projects/7100/a.dmg", answer);
        else
            m_scene->server().answerRaw("/projects/7100/a.dmg", answer);
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::contents(UpdateScene::downloads() + QStringLiteral("/a.dmg")),
                 QByteArray("installer"));
        QCOMPARE(UpdateScene::entries().size(), 1);
    }

    void aRedirectIsFollowedUnderTheFirstName() {
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().redirect("/projects/7100/a.dmg", "/mirror/b.dmg");
        m_scene->server().answer("/mirror/b.dmg", "installer");
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::entries(), QStringList{QStringLiteral("a.dmg")});
        QCOMPARE(UpdateScene::contents(UpdateScene::downloads() + QStringLiteral("/a.dmg")),
                 QByteArray("installer"));
    }

    void theLastRecordNamesTheFile() {
        m_scene->server().answer("/projects/7100/files.txt",
                                 UpdateScene::index("2013.3", "a.dmg") +
                                     UpdateScene::index("2013.4", "b.dmg"));
        const auto window = m_scene->window();
        QTRY_VERIFY_WITH_TIMEOUT(
            UpdateScene::versionText(*window).contains(QStringLiteral("(2013.4)")), 20000);
        m_scene->server().answer("/projects/7100/b.dmg", "installer");
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::entries(), QStringList{QStringLiteral("b.dmg")});
    }

    void theDesktopTakesWhatNoDownloadFolderDoes() {
        QDir(UpdateScene::downloads()).removeRecursively();
        const QString desktop = QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
        QVERIFY(QDir().mkpath(desktop));
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().answer("/projects/7100/a.dmg", "installer");
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::statusText(*window),
                 QStringLiteral("Stored in %1/a.dmg").arg(desktop));
        QCOMPARE(UpdateScene::contents(desktop + QStringLiteral("/a.dmg")),
                 QByteArray("installer"));
        QDir(desktop).removeRecursively();
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
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().answerRaw("/projects/7100/a.dmg", answer);
        UpdateScene::clickDownload(*window);

        QCOMPARE(UpdateScene::statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(UpdateScene::entries().isEmpty());
        QCOMPARE(m_scene->boxes(), QStringList{UpdateScene::installQuestion()});
    }

    void anEmptyInstallerIsStoredToo() {
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().answer("/projects/7100/a.dmg", "");
        UpdateScene::clickDownload(*window);
        QVERIFY(QFile::exists(UpdateScene::downloads() + QStringLiteral("/a.dmg")));
    }

    void cancellingRemovesTheRest() {
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().stall("/projects/7100/a.dmg",
                                "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc");
        whenDownloading(*window, stalled(), [](QProgressDialog& progress) {
            QCOMPARE(progress.labelText(), QStringLiteral("Downloading a.dmg..."));
            // A name may look like markup.
            QCOMPARE(progress.findChild<QLabel*>()->textFormat(), Qt::PlainText);
            progress.findChild<QPushButton*>()->click();
        });
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(UpdateScene::entries().isEmpty());
        QCOMPARE(m_scene->boxes(), QStringList{UpdateScene::installQuestion()});
        QVERIFY(!window->installStarted());
    }

    void aFileThatIsThereIsOfferedAsItIs() {
        UpdateScene::write(UpdateScene::downloads() + QStringLiteral("/a.dmg"), "old");
        const auto window = m_scene->offered("a.dmg");
        UpdateScene::clickDownload(*window);

        QCOMPARE(UpdateScene::contents(UpdateScene::downloads() + QStringLiteral("/a.dmg")),
                 QByteArray("old"));
        QCOMPARE(
            m_scene->boxes(),
            (QStringList{
                QStringLiteral("Download|a.dmg is already at %1.").arg(UpdateScene::downloads()),
                UpdateScene::installQuestion()}));
        QVERIFY(!m_scene->server().requests().contains("/projects/7100/a.dmg"));
    }

    void aFolderThatCannotBeWrittenIsTold() {
        const auto window = m_scene->offered("a.dmg");
        QDir(UpdateScene::downloads()).removeRecursively();
        UpdateScene::clickDownload(*window);
        QCOMPARE(m_scene->boxes().size(), 1);
        QVERIFY2(m_scene->boxes().first().startsWith(
                     QStringLiteral("Download|Unable to save the file a.dmg: ")),
                 qPrintable(m_scene->boxes().first()));
        QVERIFY(!m_scene->server().requests().contains("/projects/7100/a.dmg"));
    }

    void aNameThatLeavesTheFolderIsRefused() {
        const auto window = m_scene->offered("../a.dmg");
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(m_scene->boxes().isEmpty());
        QCOMPARE(m_scene->server().requests().size(), 1);
    }

    void whatIsNoInstallerIsNotOffered() {
        const auto window = m_scene->offered("a.deb");
        m_scene->server().answer("/projects/7100/a.deb", "package");
        UpdateScene::clickDownload(*window);
        QVERIFY(UpdateScene::statusText(*window).startsWith(QStringLiteral("Stored in ")));
        QVERIFY(m_scene->boxes().isEmpty());
        QVERIFY(!window->isNewFV2200(QStringLiteral("a.deb")));
        QVERIFY(window->isNewFV2200(QStringLiteral("a.exe")));
        QVERIFY(!window->isNewFV2200(QStringLiteral("a.EXE")));
    }

    void yesStartsTheInstallerAndClosesTheDialog() {
        // The name without ".exe" is what is started; here a script that leaves a mark.
        const QString mark = UpdateScene::downloads() + QStringLiteral("/started");
        const QString script = UpdateScene::downloads() + QStringLiteral("/set up");
        UpdateScene::write(script, "#!/bin/sh\ntouch '" + QFile::encodeName(mark) + "'\n");
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const auto window = m_scene->offered("set up.exe");
        m_scene->server().answer("/projects/7100/set%20up.exe", "x");
        m_scene->answerQuestions(QMessageBox::Yes);
        window->show();
        UpdateScene::clickDownload(*window);

        QVERIFY(window->installStarted());
        QVERIFY(!window->isVisible());
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(mark), 20000);
    }

    void aDiskImageIsHandedToOpen() {
        const QString tools = UpdateScene::downloads() + QStringLiteral("/tools");
        const QString mark = UpdateScene::downloads() + QStringLiteral("/opened");
        QVERIFY(QDir().mkpath(tools));
        // As the last line, so that the file is whole once it holds it.
        UpdateScene::write(tools + QStringLiteral("/open"),
                           "#!/bin/sh\nprintf '%s|%s\\n' \"$#\" \"$1\" >'" +
                               QFile::encodeName(mark) + "'\n");
        QFile::setPermissions(tools + QStringLiteral("/open"),
                              QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        const QByteArray path = qgetenv("PATH");
        qputenv("PATH", QFile::encodeName(tools) + ':' + path);
        const auto window = m_scene->offered("a b.dmg");
        m_scene->server().answer("/projects/7100/a%20b.dmg", "image");
        m_scene->answerQuestions(QMessageBox::Yes);
        UpdateScene::clickDownload(*window);
        qputenv("PATH", path);

        QVERIFY(window->installStarted());
        const QByteArray expected =
            "1|" + QFile::encodeName(UpdateScene::downloads()) + "/a b.dmg\n";
        QTRY_COMPARE_WITH_TIMEOUT(UpdateScene::contents(mark), expected, 20000);
    }

    void anInstallerThatDoesNotStartLeavesTheDialogOpen() {
        const auto window = m_scene->offered("a.exe");
        m_scene->server().answer("/projects/7100/a.exe", "installer");
        m_scene->answerQuestions(QMessageBox::Yes);
        window->show();
        UpdateScene::clickDownload(*window);
        QCOMPARE(m_scene->boxes(), QStringList{UpdateScene::installQuestion()});
        QVERIFY(!window->installStarted());
        QVERIFY(window->isVisible());
    }

    void everyEndingIsTakenOffTheProgramToStart() {
        const QString mark = UpdateScene::downloads() + QStringLiteral("/started");
        const QString script = UpdateScene::downloads() + QStringLiteral("/set.up");
        UpdateScene::write(script, "#!/bin/sh\ntouch '" + QFile::encodeName(mark) + "'\n");
        QFile::setPermissions(script, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        m_scene->answerQuestions(QMessageBox::Yes);
        const auto window = m_scene->window();
        QVERIFY(
            window->openTheUpdate(UpdateScene::downloads() + QStringLiteral("/set.exe.up.exe")));
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(mark), 20000);
    }

    void onceAnImageIsStoredAnyNameIsAnInstaller() {
        const auto window = m_scene->offered("a.dmg");
        QVERIFY(!window->isNewFV2200(QStringLiteral("b")));
        m_scene->server().answer("/projects/7100/a.dmg", "image");
        UpdateScene::clickDownload(*window);
        QVERIFY(window->isNewFV2200(QStringLiteral("b")));
        QVERIFY(window->isNewFV2200(QStringLiteral("b.exe")));
    }

    void aStalledDownloadIsGivenUp() {
        const auto window = m_scene->offered("a.dmg", {.patience = std::chrono::milliseconds(300)});
        m_scene->server().stall("/projects/7100/a.dmg",
                                "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\nabc");
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(UpdateScene::entries().isEmpty());
    }

    void aFullDiskEndsTheDownload_data() {
        QTest::addColumn<qint64>("size");

        QTest::newRow("while it runs") << (qint64{8} << 20);
        QTest::newRow("at its end") << qint64{2000};
    }

    void aFullDiskEndsTheDownload() {
        QFETCH(qint64, size);
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().stream("/projects/7100/a.dmg", size);
        {
            const FileSizeLimit limit(1000);
            UpdateScene::clickDownload(*window);
        }
        QCOMPARE(UpdateScene::statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(UpdateScene::entries().isEmpty());
        QCOMPARE(m_scene->boxes(), QStringList{UpdateScene::installQuestion()});
    }

    void aSecureDownloadNeverBecomesAnInsecureOne() {
        const TlsTrust trust;
        HttpServer insecure;
        insecure.answer("/a.dmg", "installer");
        UpdateScene scene(std::make_unique<HttpServer>(trust.server(), QStringLiteral("https")));
        const auto window = scene.offered("a.dmg");
        scene.server().redirect("/projects/7100/a.dmg",
                                insecure.url(QStringLiteral("/a.dmg")).toLatin1());
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::statusText(*window), QStringLiteral("Could not complete download."));
        QVERIFY(insecure.requests().isEmpty());
        QVERIFY(UpdateScene::entries().isEmpty());
    }

    void aFileThatAppearsMeanwhileIsNotOverwritten() {
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().stall("/projects/7100/a.dmg",
                                "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\ninstalle");
        whenDownloading(*window, stalled(), [this](QProgressDialog&) {
            UpdateScene::write(UpdateScene::downloads() + QStringLiteral("/a.dmg"), "other");
            m_scene->server().resume("r");
        });
        UpdateScene::clickDownload(*window);
        QCOMPARE(UpdateScene::contents(UpdateScene::downloads() + QStringLiteral("/a.dmg")),
                 QByteArray("other"));
        QCOMPARE(UpdateScene::entries().size(), 1);
    }

    void quittingMidwayLeavesNothingAndAsksNothing() {
        auto window = m_scene->offered("a.dmg");
        m_scene->server().stall("/projects/7100/a.dmg",
                                "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc");
        whenDownloading(*window, stalled(), [](QProgressDialog&) { QApplication::exit(); });
        QTimer::singleShot(0, window.get(), [&window] { UpdateScene::clickDownload(*window); });
        QApplication::exec();
        window.reset();
        QVERIFY(UpdateScene::entries().isEmpty());
        QVERIFY(m_scene->boxes().isEmpty());
    }

    void aLongPathDoesNotWidenTheDialog() {
        const QByteArray name = QByteArray("GX7100Group-").repeated(12) + ".dmg";
        const auto window = m_scene->offered(name);
        window->show();
        m_scene->server().answer("/projects/7100/" + name, "installer");
        UpdateScene::clickDownload(*window);
        QVERIFY(UpdateScene::statusText(*window).startsWith(QStringLiteral("Stored in ")));
        QCoreApplication::processEvents();
        QVERIFY2(window->width() <= 600, qPrintable(QString::number(window->width())));
        const QLabel* const label = UpdateScene::statusLabel(*window);
        QVERIFY(label->heightForWidth(label->width()) <= label->height());
    }

    void progressCountsInPartsOfEqualSize() {
        const auto window = m_scene->window();
        const auto* const progress = window->findChild<QProgressDialog*>();
        window->updateDataTransferProgress(3, 9);
        QCOMPARE(progress->value(), 3);
        QCOMPARE(progress->maximum(), 9);
        window->updateDataTransferProgress(qint64{3} << 31, qint64{4} << 31);
        QCOMPARE(qRound(100.0 * progress->value() / progress->maximum()), 75);
        // A size that is not known is a busy bar.
        window->updateDataTransferProgress(5, -1);
        QCOMPARE(progress->maximum(), 0);
    }

    void aLargeDownloadIsStreamed() {
        const auto window = m_scene->offered("a.dmg");
        m_scene->server().stream("/projects/7100/a.dmg", largeDownload);
        const auto* const progress = window->findChild<QProgressDialog*>();
        const ResidentMemory memory;
        UpdateScene::clickDownload(*window);
        QCOMPARE(QFile(UpdateScene::downloads() + QStringLiteral("/a.dmg")).size(), largeDownload);
        QCOMPARE(progress->maximum(), largeDownload);
        QCOMPARE(progress->value(), largeDownload);
        QVERIFY2(memory.growth() < memoryForIt, qPrintable(QString::number(memory.growth())));
    }

private:
    /// The server has begun to answer and waits.
    std::function<bool()> stalled() {
        return [this] { return m_scene->server().requests().contains("/projects/7100/a.dmg"); };
    }

    std::unique_ptr<UpdateScene> m_scene;
};

int main(int argc, char** argv) {
    return runTest<DownloadTest>(argc, argv);
}

#include "test_download.moc"
