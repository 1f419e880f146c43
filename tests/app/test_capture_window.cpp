#include "CaptureControl.h"
#include "FakeLink.h"
#include "Operator.h"
#include "TestEnvironment.h"

#include <QApplication>
#include <QFile>
#include <QPushButton>
#include <QSettings>
#include <QSpinBox>
#include <QTemporaryDir>

namespace {

constexpr int patience = 20000;

QList<CaptureControl*> captureWindows() {
    QList<CaptureControl*> windows;
    for (QWidget* widget : QApplication::topLevelWidgets())
        if (auto* window = qobject_cast<CaptureControl*>(widget))
            windows << window;
    return windows;
}

void chooseInMenu(const LCD7100& display, const QString& text) {
    for (auto* action : display.findChildren<QAction*>())
        if (action->text() == text)
            action->trigger();
}

void connectTile(ConnectionWidget& tile, const QString& label) {
    tile.connectEther(label, QStringLiteral("unit3"), new FakeLink, "192.0.2.1", 0, 7100);
}

void setCounter(const CaptureControl& window, int value) {
    window.findChild<QSpinBox*>(QStringLiteral("incVal"))->setValue(value);
}

} // namespace

class TestCaptureWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { Q_INIT_RESOURCE(group); }
    void init() { QSettings(QStringLiteral("VESTRA"), QStringLiteral("group7100")).clear(); }
    void madeOnFirstUseAndKept();
    void savesTheScreenOfItsTile();
    void closingTheGroupWindowClosesItAndStoresIt();
    void removingTheTileStoresIt();
};

void TestCaptureWindow::madeOnFirstUseAndKept() {
    ConnectionWidget tile;
    connectTile(tile, QStringLiteral("North"));
    auto* display = tile.findChild<LCD7100*>();
    QVERIFY(captureWindows().isEmpty());
    chooseInMenu(*display, QStringLiteral("Capture Control"));
    QCOMPARE(captureWindows().size(), 1);
    CaptureControl* window = captureWindows().first();
    QVERIFY(window->isVisible());
    QVERIFY(!window->isModal());
    QVERIFY(!window->parentWidget());
    QCOMPARE(window->windowTitle(), QStringLiteral("North@unit3"));

    window->close();
    connectTile(tile, {});
    tile.showCaptureWindow();
    QCOMPARE(captureWindows(), QList{window});
    QVERIFY(window->isVisible());
    QCOMPARE(window->windowTitle(), QStringLiteral("unit3"));
}

void TestCaptureWindow::savesTheScreenOfItsTile() {
    const QTemporaryDir folder;
    ConnectionWidget tile;
    tile.showCaptureWindow();
    QVERIFY(captureWindows().size() == 1);
    const CaptureControl* window = captureWindows().first();
    window->findChild<QLabel*>(QStringLiteral("dirLabel"))->setText(folder.path() + u'/');
    setCounter(*window, 5);
    window->findChild<QPushButton*>(QStringLiteral("captureButton"))->click();
    QFile file(folder.filePath(QStringLiteral("7100Screen_5.pdf")));
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.read(5), QByteArray("%PDF-"));
}

void TestCaptureWindow::closingTheGroupWindowClosesItAndStoresIt() {
    {
        Operator person;
        person.tile(0).showCaptureWindow();
        QCOMPARE(captureWindows().size(), 1);
        setCounter(*captureWindows().first(), 41);
        QVERIFY(person.window().close());
        QVERIFY(!captureWindows().first()->isVisible());
    }
    QVERIFY(captureWindows().isEmpty());

    Operator person;
    person.tile(0).showCaptureWindow();
    QCOMPARE(captureWindows().first()->findChild<QSpinBox*>(QStringLiteral("incVal"))->value(), 41);
}

void TestCaptureWindow::removingTheTileStoresIt() {
    Operator person;
    person.tile(0).showCaptureWindow();
    setCounter(*captureWindows().first(), 42);
    person.pressKill(0);
    QTRY_VERIFY_WITH_TIMEOUT(captureWindows().isEmpty(), patience);
    person.window().addEmptyConnection(false);
    person.tile(0).showCaptureWindow();
    QCOMPARE(captureWindows().first()->findChild<QSpinBox*>(QStringLiteral("incVal"))->value(), 42);
}

int main(int argc, char** argv) {
    return runTest<TestCaptureWindow>(argc, argv);
}

#include "test_capture_window.moc"
