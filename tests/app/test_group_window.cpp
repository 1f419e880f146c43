#include "HelpLinks.h"
#include "HttpServer.h"
#include "LCD7100.h"
#include "ModalDialog.h"
#include "NewConnection.h"
#include "TestEnvironment.h"
#include "WindowUnderTest.h"

#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSettings>
#include <QToolBar>

namespace {

constexpr int patience = 20000;

const QByteArray defaultColors = QByteArray::fromHex("0000000300ff0000ff"
                                                     "0000000300ffe0e0e0"
                                                     "0000000300ffff0000");

} // namespace

class TestGroupWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        // A window that starts asks for news: here there is nobody to ask.
        newsSource.clear();
    }
    void init() { m_store.clear(); }
    void firstStart();
    void identity();
    void menusAndActions();
    void toolBarHoldsAddConnection();
    void aboutBox();
    void newsAreAskedForOnce();
    void cancelledNewConnection();
    void newConnectionWithoutAddress();
    void closingWithoutConnection();
    void closingWithAConnection_data();
    void closingWithAConnection();

private:
    QSettings m_store{QStringLiteral("VESTRA"), QStringLiteral("group7100")};
};

void TestGroupWindow::firstStart() {
    const Window window;
    QCOMPARE(window.tiles().size(), 1);
    QVERIFY(window.tile(0, 0));
    QVERIFY(!window.tile(0, 0)->IsConnected());
    auto* display = window.tile(0, 0)->findChild<LCD7100*>();
    QCOMPARE(display->getColors(), defaultColors);
    QCOMPARE(display->getFontFamily(), QStringLiteral("Arial"));
    window.widget->show();
    // As asked for, unless the menus, the tile and the bars need more.
    const QSize least = window.widget->minimumSizeHint();
    QCOMPARE(window.widget->size(), QSize(450, 180).expandedTo(least));
    QVERIFY(least.width() < 450);

    // Two columns are allowed.
    window.widget->addEmptyConnection(false);
    window.widget->addEmptyConnection(false);
    QVERIFY(window.tile(0, 1));
    QVERIFY(window.tile(1, 0));
    QVERIFY(!window.tile(0, 2));
}

void TestGroupWindow::identity() {
    const Window window;
    QCOMPARE(QApplication::applicationName(), QStringLiteral("GX7100Group"));
    QCOMPARE(QApplication::applicationVersion(), QStringLiteral("2.1"));
    QCOMPARE(QApplication::organizationName(), QStringLiteral("vestra"));
    QCOMPARE(window.widget->windowTitle(), QStringLiteral("GX7100Group 2.1"));
}

void TestGroupWindow::menusAndActions() {
    const Window window;
    const auto menus = window.widget->menuBar()->actions();
    QCOMPARE(menus.size(), 3);
    QCOMPARE(menus[0]->text(), QStringLiteral("&File"));
    QCOMPARE(menus[0]->menu()->actions().first()->text(), QStringLiteral("Preferences"));
    QCOMPARE(menus[0]->menu()->actions().last()->text(), QStringLiteral("Quit"));
    QCOMPARE(menus[1]->text(), QStringLiteral("Tiles"));
    QCOMPARE(menus[2]->text(), QStringLiteral("&Help"));
    QStringList help;
    for (const QAction* action : menus[2]->menu()->actions())
        if (!action->isSeparator())
            help.append(action->text());
    QCOMPARE(help, (QStringList{QStringLiteral("About"), QStringLiteral("About Qt"),
                                QStringLiteral("User Guide for GX7100Group"),
                                QStringLiteral("GX-7100 Manual, ver 6.2"),
                                QStringLiteral("Visit the VESTRA web site"),
                                QStringLiteral("Check for Software updates"),
                                QStringLiteral("Latest GX-7100 news")}));

    const auto* quit = window.action(QStringLiteral("Quit"));
    QCOMPARE(quit->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_Q));
    QCOMPARE(quit->statusTip(), QStringLiteral("Exit the application"));
    QVERIFY(quit->icon().isNull());
    const auto* add = window.action(QStringLiteral("Add connection"));
    QCOMPARE(add->shortcut(), QKeySequence(Qt::CTRL | Qt::Key_P));
    QCOMPARE(add->statusTip(), QStringLiteral("Add a connection"));
    QVERIFY(!add->icon().isNull());
}

void TestGroupWindow::toolBarHoldsAddConnection() {
    const Window window;
    const auto* bar = window.widget->findChild<QToolBar*>(QStringLiteral("mainToolBar"));
    QVERIFY(bar);
    QVERIFY(bar->actions().contains(window.action(QStringLiteral("Add connection"))));
    QVERIFY(window.widget->findChild<QStatusBar*>(QStringLiteral("statusBar")));
}

void TestGroupWindow::aboutBox() {
    const Window window;
    QString title;
    QString text;
    const ModalDialog<QMessageBox> box([&](QMessageBox& shown) {
        title = shown.windowTitle();
        text = shown.text();
        shown.accept();
    });
    window.action(QStringLiteral("About"))->trigger();
    QVERIFY(box.answered());
    QCOMPARE(title, QStringLiteral("About GX7100Group"));
    QVERIFY(text.startsWith(QStringLiteral("<h3>GX7100Group 2.1</h3>")));
}

void TestGroupWindow::newsAreAskedForOnce() {
    HttpServer server;
    newsSource = server.url(QStringLiteral("/news"));
    {
        const Window window;
        QTRY_COMPARE_WITH_TIMEOUT(server.requests(), QList<QByteArray>{"/news"}, patience);
    }
    newsSource.clear();
    QCOMPARE(server.requests().size(), 1);
}

void TestGroupWindow::cancelledNewConnection() {
    const Window window;
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) {
        QCOMPARE(shown.windowTitle(), QStringLiteral("New Connection"));
        shown.reject();
    });
    window.action(QStringLiteral("Add connection"))->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(window.tiles().size(), 1);
}

void TestGroupWindow::newConnectionWithoutAddress() {
    const Window window;
    window.widget->show();
    const int height = window.widget->height();
    const ModalDialog<NewConnection> dialog([](NewConnection& shown) { shown.accept(); });
    window.action(QStringLiteral("Add connection"))->trigger();
    QVERIFY(dialog.answered());
    QCOMPARE(window.tiles().size(), 2);
    QVERIFY(!window.tile(0, 1)->IsConnected());
    QCOMPARE(window.tile(0, 1)->findChild<QLabel*>("nameLabel")->text(),
             QStringLiteral("TextLabel"));
    QCOMPARE(window.widget->height(), 2 * height);
}

void TestGroupWindow::closingWithoutConnection() {
    m_store.setValue("group/count", 2);
    const Window window;
    window.widget->show();
    FakeLink* link = Window::connectTile(window.tile(0, 0));
    link->close();
    const ModalDialog<QMessageBox> box([](QMessageBox& unwanted) { unwanted.reject(); });
    window.action(QStringLiteral("Quit"))->trigger();
    QVERIFY(!box.answered());
    QVERIFY(!window.widget->isVisible());
}

void TestGroupWindow::closingWithAConnection_data() {
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::addColumn<bool>("closed");

    QTest::newRow("yes") << QMessageBox::Yes << true;
    QTest::newRow("cancel") << QMessageBox::Cancel << false;
    QTest::newRow("dismissed") << QMessageBox::NoButton << false;
}

void TestGroupWindow::closingWithAConnection() {
    QFETCH(const QMessageBox::StandardButton, answer);
    QFETCH(const bool, closed);
    m_store.setValue("group/count", 3);
    const Window window;
    window.widget->show();
    FakeLink* link = Window::connectTile(window.tile(0, 1));
    FakeLink* second = Window::connectTile(window.tile(1, 0));
    auto* lost = Window::connectTile(window.tile(0, 0));
    lost->close();
    m_store.clear();
    const ModalDialog<QMessageBox> box([answer](QMessageBox& shown) {
        QCOMPARE(shown.text(), QStringLiteral("Disconnect and quit?"));
        QCOMPARE(shown.standardButtons(), QMessageBox::Yes | QMessageBox::Cancel);
        QCOMPARE(shown.defaultButton(), shown.button(QMessageBox::Yes));
        QCOMPARE(shown.icon(), QMessageBox::Question);
        if (answer == QMessageBox::NoButton)
            shown.reject();
        else
            shown.button(answer)->click();
    });
    QCOMPARE(window.widget->close(), closed);
    QVERIFY(box.answered());
    QCOMPARE(window.widget->isVisible(), !closed);
    const QStringList calls = closed ? QStringList(QStringLiteral("Disconnect")) : QStringList();
    QCOMPARE(link->calls, calls);
    QCOMPARE(second->calls, calls);
    QVERIFY(lost->calls.empty());
    QCOMPARE(window.tile(0, 1)->IsConnected(), !closed);
    QCOMPARE(m_store.contains("group/count"), closed);
}

int main(int argc, char** argv) {
    return runTest<TestGroupWindow>(argc, argv);
}

#include "test_group_window.moc"
