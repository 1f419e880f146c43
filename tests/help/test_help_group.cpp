#include "HelpGroup.h"
#include "HelpLinks.h"
#include "PlatformTag.h"
#include "TestEnvironment.h"
#include "UpdateScene.h"

#include <QAction>
#include <QDesktopServices>
#include <QDir>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QTimer>

#include <functional>

class HelpGroupTest : public QObject {
    Q_OBJECT

public slots:
    void take(const QUrl& url) { m_opened.append(url); }

private slots:
    void init() {
        QCoreApplication::setApplicationName(QStringLiteral("GX7100Group"));
        m_opened.clear();
    }

    void theMenuStandsInOrder() {
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
        QMainWindow window;
        HelpGroup help(&window, &window);
        QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "take");
        choose(help, 1);
        choose(help, 2);
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
        choose(help, 3);
        QDesktopServices::unsetUrlHandler(QStringLiteral("https"));
        QCOMPARE(m_opened, QList<QUrl>{QUrl(webSite)});
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

    void whatNothingOpensIsTold() {
        UpdateScene scene;
        QMainWindow window;
        HelpGroup help(&window, &window);
        // Without a desktop there is no program that opens anything.
        choose(help, 2);
        choose(help, 3);
        const QString manual = help.getLocalResource(QStringLiteral("Using_the_GX-7100E-v6.2.pdf"));
        const QString start = QStringLiteral("GX7100Group|There is no program here that opens ");
        QCOMPARE(scene.boxes().size(), 2);
        QVERIFY2(scene.boxes()[0].startsWith(start) && scene.boxes()[0].endsWith(manual + u'.'),
                 qPrintable(scene.boxes()[0]));
        QCOMPARE(scene.boxes()[1], start + webSite + u'.');
    }

    void aboutQtIsItsOwnBox() {
        UpdateScene scene;
        QMainWindow window;
        HelpGroup help(&window, &window);
        choose(help, 0);
        QCOMPARE(scene.boxes().size(), 1);
        QVERIFY(scene.boxes().constFirst().startsWith(QStringLiteral("About Qt|")));
    }

    void aCheckForUpdatesLeavesTheWindowOpen() {
        UpdateScene scene;
        scene.server().answer("/projects/7100/files.txt",
                              "apps_test\t2013.9\tx\ta.dmg\n" +
                                  UpdateScene::index("2013.3", "a.dmg"));
        QString status;
        runUpdateCheck(scene, [&status](UpdateWindow& dialog) {
            status = UpdateScene::versionText(dialog);
            UpdateScene::button(dialog, QStringLiteral("Done"))->click();
        });
        QVERIFY2(status.contains(QStringLiteral("Your version is 2013.2")), qPrintable(status));
        QVERIFY2(status.contains(QStringLiteral("A new version (2013.3) is available")),
                 qPrintable(status));
        QVERIFY(m_window->isVisible());
    }

    void anInstallerThatStartsClosesTheWindow_data() {
        QTest::addColumn<bool>("agreed");
        QTest::newRow("agreed") << true;
        QTest::newRow("declined") << false;
    }

    void anInstallerThatStartsClosesTheWindow() {
        QFETCH(bool, agreed);
        UpdateScene scene;
        scene.server().answer("/projects/7100/files.txt", UpdateScene::index("2013.3", "set.exe"));
        const QString installer = UpdateScene::downloads() + QStringLiteral("/set");
        UpdateScene::write(installer, "#!/bin/sh\n");
        QFile::setPermissions(installer, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        UpdateScene::write(installer + QStringLiteral(".exe"), "as it is");
        scene.answerQuestions(agreed ? QMessageBox::Yes : QMessageBox::No);
        runUpdateCheck(scene, [agreed](UpdateWindow& dialog) {
            UpdateScene::clickDownload(dialog);
            QCOMPARE(dialog.isVisible(), !agreed);
            dialog.doDone();
        });
        QCOMPARE(m_window->isVisible(), !agreed);
    }

    void thisPlatformHasATag() {
#if defined(Q_OS_LINUX)
        QCOMPARE(platformTag(), QStringLiteral("apps_linux64"));
#endif
    }

private:
    /// Chooses an entry of the help menu, counted from 0.
    static void choose(HelpGroup& help, int entry) {
        QMenu menu;
        help.buildHelpMenu(&menu);
        menu.actions().at(entry)->trigger();
    }

    /// Runs the check from the menu; acts as soon as the server's offer is shown.
    void runUpdateCheck(const UpdateScene& scene, const std::function<void(UpdateWindow&)>& act) {
        downloadSource = scene.base();
        m_window = std::make_unique<QMainWindow>();
        m_window->show();
        HelpGroup help(m_window.get(), m_window.get());
        help.setTagAndVer(QStringLiteral("tag"), QStringLiteral("2013.2"));
        QTimer poll;
        connect(&poll, &QTimer::timeout, this, [&poll, &act] {
            auto* const dialog = qobject_cast<UpdateWindow*>(QApplication::activeModalWidget());
            if (!dialog || !UpdateScene::button(*dialog, QStringLiteral("Download"))->isEnabled())
                return;
            poll.stop();
            act(*dialog);
        });
        poll.start(1);
        choose(help, 4);
    }

    std::unique_ptr<QMainWindow> m_window;
    QList<QUrl> m_opened;
};

int main(int argc, char** argv) {
    return runTest<HelpGroupTest>(argc, argv);
}

#include "test_help_group.moc"
