// File transfers as an operator makes them: in a tile, over a real line, with a simulated
// instrument.

#include "ConnectGX7100Serial.h"
#include "ConnectionWidget.h"
#include "FakeLink.h"
#include "FittingLabel.h"
#include "Frame.h"
#include "SerialSimulator.h"
#include "SpinUntil.h"
#include "TestEnvironment.h"
#include "TransferPanel.h"

#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QProgressBar>
#include <QToolButton>

#include <sys/stat.h>

class TestTransferPanel : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() {
        Q_INIT_RESOURCE(group);
        QLocale::setDefault(QLocale::c());
    }
    void theMenuKnowsTheLine();
    void thePacketOfAFile();
    void aFileIsSentAndComesBack();
    void tilesOfAnySizeHaveRoomForIt_data();
    void tilesOfAnySizeHaveRoomForIt();
    void stoppedWhileSending();
    void stoppedWhileWaiting();
    void aLostLine();
    void aShortCountIsToldAsItIs();
    void filesThatCannotBeSent();
    void whatHappensWhileAFileIsChosen();
    void unsavedFilesAreBounded();
    void whatCannotBeSavedStays();
    void nothingIsOverwrittenUnasked();
};

namespace {

constexpr int patience = 60000;

QByteArray contents(int size) {
    QByteArray bytes(size, '\0');
    for (int i = 0; i < size; ++i)
        bytes[i] = static_cast<char>(i + i / 251);
    return bytes;
}

/// A tile, the instrument at the other end of its line, and a folder with a file in it.
struct Scene {
    explicit Scene(int fileSize, int baud = 0, const char* fault = nullptr)
        : simulator(settings(baud, fault)), file(contents(fileSize)) {
        QFile source(path("source"));
        if (!simulator.start() || !source.open(QIODevice::WriteOnly) || source.write(file) < 0)
            qFatal("no scene");
        tile.connectSerial("North", new ConnectGX7100Serial(&tile), simulator.portName());
        tile.resize(400, 200);
        tile.show();
    }

    static SerialSimulatorSettings settings(int baud, const char* fault) {
        SerialSimulatorSettings result;
        result.updatesPerSecond = 0;
        result.line.baud = baud;
        if (fault && !addLineFault(result.line.faults, fault))
            qFatal("no such fault");
        return result;
    }
    QString path(const QString& name) const { return folder.filePath(name); }
    TransferPanel* panel() { return tile.findChild<TransferPanel*>("transferPanel"); }
    QToolButton* button(const char* name) { return tile.findChild<QToolButton*>(name); }
    FittingLabel* label() { return tile.findChild<FittingLabel*>("statusLabel"); }
    QString text() { return label()->text(); }
    QString shown() { return label()->shown(label()->width()); }
    bool says(const QString& words) {
        const bool said = spinUntil([&] { return text() == words; }, patience);
        if (!said)
            qWarning("it says: %s", qPrintable(text()));
        return said;
    }
    QStringList menu() {
        QStringList entries;
        for (const QAction* action : tile.findChild<QMenu*>()->actions())
            entries << action->text();
        return entries;
    }

    QTemporaryDir folder;
    SerialSimulator simulator;
    QByteArray file;
    ConnectionWidget tile;
};

const QStringList twoEntries{"Open kbd comm to all", "Close kbd comm to all"};

} // namespace

void TestTransferPanel::theMenuKnowsTheLine() {
    {
        ConnectionWidget tile;
        tile._connect(new FakeLink);
        emit tile.findChild<QMenu*>()->aboutToShow();
        QCOMPARE(tile.findChild<QMenu*>()->actions().size(), 2);
    }
    Scene scene(10);
    QCOMPARE(scene.menu(), twoEntries + QStringList("Send File..."));
    QVERIFY(scene.panel()->isHidden());
    scene.tile.Disconnect();
    QVERIFY(spinUntil([&] { return scene.menu() == twoEntries; }, patience));
    QVERIFY(!scene.panel()->canSend());
}

void TestTransferPanel::thePacketOfAFile() {
    const QByteArray file("a\0b", 3);
    QCOMPARE(QByteArray::fromStdString(TransferPanel::filePacket(file)),
             QByteArray("\0\0\0\0FXTOID:CATCH\na\0b", 20));
}

void TestTransferPanel::aFileIsSentAndComesBack() {
    Scene scene(5000);
    std::optional<QByteArray> atInstrument;
    connect(&scene.simulator, &SerialSimulator::fileReceived, this,
            [&](const QByteArray& file) { atInstrument = file; });
    scene.panel()->sendFile(scene.path("source"));
    QVERIFY(!scene.panel()->isHidden());
    QVERIFY(!scene.panel()->canSend());
    QVERIFY(scene.says("source was sent"));
    QVERIFY(atInstrument == scene.file);
    QVERIFY(scene.panel()->canSend());
    QVERIFY(scene.tile.findChild<QProgressBar*>("progressBar")->isHidden());
    QVERIFY(scene.button("saveBtn")->isHidden());

    scene.simulator.sendFile(scene.file);
    QVERIFY(scene.says("Received 4.9 kB"));
    QVERIFY(spinUntil([&] { return !scene.button("saveBtn")->isHidden(); }, patience));
    scene.button("saveBtn")->click();
    auto* dialog = scene.tile.findChild<QFileDialog*>();
    QVERIFY(dialog);
    QVERIFY(!dialog->selectedFiles().first().section('/', -1).contains("pts/"));
    dialog->setDirectory(scene.folder.path());
    dialog->selectFile(scene.path("copy"));
    QMetaObject::invokeMethod(dialog, "accept");
    QVERIFY(scene.says("copy was saved"));
    QFile copy(scene.path("copy"));
    QVERIFY(copy.open(QIODevice::ReadOnly));
    QVERIFY(copy.readAll() == scene.file);
    QVERIFY(scene.button("saveBtn")->isHidden());
    scene.button("cancelBtn")->click();
    QVERIFY(scene.panel()->isHidden());
}

void TestTransferPanel::tilesOfAnySizeHaveRoomForIt_data() {
    QTest::addColumn<int>("width");
    QTest::addColumn<QString>("shown");
    QTest::newRow("one that shows its screen in full")
        << 445 << ".* kB of 58.6 kB, .*B/s, \\d+ s left";
    QTest::newRow("the smallest") << 0 << "\\d+ s left";
}

void TestTransferPanel::tilesOfAnySizeHaveRoomForIt() {
    QFETCH(const int, width);
    QFETCH(const QString, shown);
    Scene scene(60000, 57600);
    const QSize size = scene.tile.minimumSize().expandedTo(QSize(width, 0));
    scene.tile.resize(size);
    scene.tile.setSendState(true);
    scene.panel()->sendFile(scene.path("source"));
    const QRegularExpression wording(QRegularExpression::anchoredPattern(shown));
    QVERIFY2(spinUntil([&] { return wording.match(scene.shown()).hasMatch(); }, patience),
             qPrintable(scene.shown()));
    QCOMPARE(scene.tile.size(), size);
    const auto* name = scene.tile.findChild<QLabel*>("nameLabel");
    QVERIFY(name->width() >= name->fontMetrics().horizontalAdvance("North"));
    // The text does not turn red with the frame.
    QVERIFY(isRed(scene.tile));
    QCOMPARE(scene.label()->foregroundRole(), QPalette::ButtonText);
    scene.button("cancelBtn")->click();
    QVERIFY(scene.says("Sending source: Abort"));
    QVERIFY(spinUntil([&] { return scene.shown().endsWith("Abort"); }, patience));
}

void TestTransferPanel::stoppedWhileSending() {
    Scene scene(100000, 115200);
    scene.panel()->sendFile(scene.path("source"));
    auto* bar = scene.tile.findChild<QProgressBar*>("progressBar");
    QVERIFY(spinUntil([&] { return bar->value() >= 1; }, patience));
    QVERIFY(!bar->isHidden());
    QCOMPARE(bar->maximum(), 100);
    QCOMPARE(scene.button("cancelBtn")->text(), QString("Cancel"));
    scene.button("cancelBtn")->click();
    QVERIFY(scene.says("Sending source: Abort"));
    QCOMPARE(scene.button("cancelBtn")->text(), QString("Close"));
    QVERIFY(scene.tile.IsConnected());
}

void TestTransferPanel::stoppedWhileWaiting() {
    Scene scene(10, 0, "never-answers");
    scene.panel()->sendFile(scene.path("source"));
    QVERIFY(scene.says("source: waiting for the instrument"));
    // A busy bar: nobody knows how long.
    QCOMPARE(scene.tile.findChild<QProgressBar*>("progressBar")->maximum(), 0);
    scene.button("cancelBtn")->click();
    QCOMPARE(scene.text(), QString("source was not sent: Abort"));
    QVERIFY(scene.panel()->canSend());
}

void TestTransferPanel::aLostLine() {
    Scene scene(10, 0, "never-answers");
    scene.panel()->sendFile(scene.path("source"));
    scene.tile.Disconnect();
    QVERIFY(scene.says("source was not sent: the connection has ended"));
    QVERIFY(!scene.panel()->canSend());
}

void TestTransferPanel::aShortCountIsToldAsItIs() {
    Scene scene(2000, 0, "reply=3@2x6");
    scene.panel()->sendFile(scene.path("source"));
    QVERIFY(scene.says("source: only 1020 bytes of 2.0 kB arrived"));
}

void TestTransferPanel::filesThatCannotBeSent() {
    Scene scene(10);
    scene.panel()->sendFile(scene.path("missing"));
    QVERIFY2(scene.text().startsWith("missing: "), qPrintable(scene.text()));
    QCOMPARE(mkfifo(qPrintable(scene.path("pipe")), 0600), 0);
    scene.panel()->sendFile(scene.path("pipe"));
    QCOMPARE(scene.text(), QString("pipe: not an ordinary file"));
    // A file, but one whose first byte cannot be read.
    scene.panel()->sendFile("/proc/self/mem");
    QVERIFY2(scene.text().startsWith("mem: "), qPrintable(scene.text()));
    QFile large(scene.path("large"));
    QVERIFY(large.open(QIODevice::WriteOnly));
    QVERIFY(large.resize(66844681)); // one more than 65534 blocks of 1020 bytes
    scene.panel()->sendFile(scene.path("large"));
    QCOMPARE(scene.text(), QString("large: a file for an instrument has at most 63.7 MB"));
    QVERIFY(scene.panel()->canSend());
}

void TestTransferPanel::whatHappensWhileAFileIsChosen() {
    Scene scene(60000, 57600);
    scene.panel()->askForFile();
    auto* dialog = scene.tile.findChild<QFileDialog*>();
    scene.simulator.sendFile(scene.file);
    QVERIFY(spinUntil([&] { return scene.text().startsWith("Receiving"); }, patience));
    emit dialog->fileSelected(scene.path("source"));
    QCOMPARE(scene.text(), QString("source was not sent: another file is on its way"));
    scene.tile.Disconnect();
    QVERIFY(scene.says("Receiving: Abort"));
    QVERIFY(spinUntil([&] { return scene.menu() == twoEntries; }, patience));
    emit dialog->fileSelected(scene.path("source"));
    QCOMPARE(scene.text(), QString("source was not sent: the connection has ended"));
}

void TestTransferPanel::unsavedFilesAreBounded() {
    Scene scene(0);
    for (int count = 1; count <= 20; ++count) {
        scene.simulator.sendFile(scene.file);
        const QString text = count == 1 ? "Save..." : QString("Save... (%1)").arg(count);
        QVERIFY(spinUntil(
            [&] {
                return scene.button("saveBtn")->text() == text &&
                       !scene.button("saveBtn")->isHidden();
            },
            patience));
    }
    scene.simulator.sendFile(scene.file);
    QVERIFY(scene.says("Not kept: save the others first"));
    QCOMPARE(scene.button("saveBtn")->text(), QString("Save... (20)"));
    QCOMPARE(scene.button("cancelBtn")->text(), QString("Discard"));
    scene.button("cancelBtn")->click();
    QVERIFY(scene.panel()->isHidden());
    QVERIFY(scene.button("saveBtn")->isHidden());
}

void TestTransferPanel::whatCannotBeSavedStays() {
    Scene scene(10);
    QVERIFY(spinUntil([&] { return scene.panel()->canSend(); }, patience));
    scene.simulator.sendFile(scene.file);
    QVERIFY(spinUntil([&] { return !scene.button("saveBtn")->isHidden(); }, patience));
    scene.button("saveBtn")->click();
    auto* dialog = scene.tile.findChild<QFileDialog*>();
    emit dialog->fileSelected(scene.path("no/such/folder"));
    QVERIFY2(scene.text().startsWith("folder: "), qPrintable(scene.text()));
    QVERIFY(!scene.button("saveBtn")->isHidden());
}

void TestTransferPanel::nothingIsOverwrittenUnasked() {
    Scene scene(10);
    scene.simulator.sendFile(scene.file);
    QVERIFY(spinUntil([&] { return !scene.button("saveBtn")->isHidden(); }, patience));
    scene.button("saveBtn")->click();
    auto* dialog = scene.tile.findChild<QFileDialog*>();
    QVERIFY(!dialog->testOption(QFileDialog::DontConfirmOverwrite));
    QCOMPARE(dialog->acceptMode(), QFileDialog::AcceptSave);
}

int main(int argc, char** argv) {
    return runTest<TestTransferPanel>(argc, argv);
}

#include "test_transfer_panel.moc"
