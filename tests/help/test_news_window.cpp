#include "HelpGroup.h"
#include "HelpLinks.h"
#include "HttpServer.h"
#include "NewsBrowser.h"
#include "TestEnvironment.h"
#include "UpdateScene.h"

#include <QBuffer>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMainWindow>
#include <QStandardPaths>
#include <QTextBrowser>
#include <QTimer>

#include <sys/stat.h>

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

class NewsWindowTest : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_server = std::make_unique<HttpServer>();
        QDir(folder()).removeRecursively();
    }

    void aNewPageOpensItsWindow() {
        m_server->answer("/news", "<html><body>GX-7100 <b>2.1</b> is out</body></html>");
        newsSource = m_server->url(QStringLiteral("/news"));
        QMainWindow window;
        HelpGroup help(&window, &window);
        QElapsedTimer sinceStart;
        sinceStart.start();
        help.queryNews();
        QTRY_VERIFY_WITH_TIMEOUT(newsWindow() && newsWindow()->isVisible(), 30000);
        // Not into the start of the program; timers may be a little early.
        QVERIFY(sinceStart.elapsed() > 3500);
        QCOMPARE(newsWindow()->toPlainText(), QStringLiteral("GX-7100 2.1 is out"));
        QCOMPARE(newsWindow()->windowTitle(), QStringLiteral("Latest GX-7100 News from VESTRA"));
        QCOMPARE(newsWindow()->size(), QSize(500, 300));
        QVERIFY(QFile::exists(folder() + QStringLiteral("/summary.html")));
    }

    void anUnchangedPageOpensNothing() {
        QMainWindow window;
        HelpGroup help(&window, &window);
        help.testnews(0);
        QVERIFY(!newsWindow());
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

    void theNewsReadNoLocalFile_data() {
        QTest::addColumn<QByteArray>("element");

        QTest::newRow("image") << QByteArray("<img src=\"%1\">");
        QTest::newRow("image by address") << QByteArray("<img src=\"file://%1\">");
        QTest::newRow("style sheet") << QByteArray("<link rel=stylesheet href=\"%1\"/>");
    }

    void theNewsReadNoLocalFile() {
        QFETCH(QByteArray, element);
        // Whoever opens a pipe that nobody writes to waits for ever.
        const QString pipe =
            QDir::tempPath() +
            QStringLiteral("/news-%1.pipe").arg(QCoreApplication::applicationPid());
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

private:
    static QString folder() {
        return QStandardPaths::writableLocation(QStandardPaths::CacheLocation) +
               QStringLiteral("/com.vestra.7100");
    }

    static QTextBrowser* newsWindow() {
        for (QWidget* const widget : QApplication::topLevelWidgets()) {
            if (auto* const browser = qobject_cast<QTextBrowser*>(widget))
                return browser;
        }
        return nullptr;
    }

    std::unique_ptr<HttpServer> m_server;
};

int main(int argc, char** argv) {
    return runTest<NewsWindowTest>(argc, argv);
}

#include "test_news_window.moc"
