// What an operator is told about a file transfer, and where a file from an instrument is put.

#include "ReceivedFile.h"
#include "TestEnvironment.h"
#include "TransferProgress.h"
#include "UnsavedFiles.h"

#include <sys/stat.h>

using State = TransferProgress::State;

class TestTransferProgress : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void sending();
    void wordingsForLessRoom();
    void receiving();
    void outcomes_data();
    void outcomes();
    void shortCount();
    void whatIsNotAnnouncedIsReceived();
    void aFileFromTheInstrumentComesFirst();
    void givenUp();
    void strayStatuses();
    void suggestedNames_data();
    void suggestedNames();
    void saving();
    void savingReplacesAWholeFileOrNothing();
    void filesUntilTheyAreSaved();
    void memoryForThemIsBounded();
};

namespace {

QString textAt(const TransferProgress& progress, qint64 now) {
    return progress.wordings(now).value(0);
}

} // namespace

void TestTransferProgress::sending() {
    TransferProgress progress;
    QVERIFY(!progress.isBusy());
    QCOMPARE(textAt(progress, 0), QString());
    progress.announce("log.bin", 102400);
    QVERIFY(progress.isBusy());
    QCOMPARE(progress.percent(), -1);
    QCOMPARE(textAt(progress, 0), QString("log.bin: waiting for the instrument"));
    progress.update(1, 102400, 1000);
    QCOMPARE(progress.state(), State::Sending);
    QCOMPARE(progress.percent(), 0);
    QCOMPARE(textAt(progress, 5000), QString("0 bytes of 100.0 kB"));
    progress.update(2, 5120, 2000);
    QCOMPARE(progress.percent(), 5);
    QCOMPARE(textAt(progress, 1400), QString("5.0 kB of 100.0 kB"));
    QCOMPARE(textAt(progress, 2000), QString("5.0 kB of 100.0 kB, 5.0 kB/s, 20 s left"));
    QCOMPARE(textAt(progress, 11000), QString("5.0 kB of 100.0 kB, 512 bytes/s, 3:11 left"));
    QCOMPARE(textAt(progress, 1001000), QString("5.0 kB of 100.0 kB, 5 bytes/s, 5:16:41 left"));
    QCOMPARE(textAt(progress, 190890), QString("5.0 kB of 100.0 kB, 26 bytes/s, 1:00:08 left"));
    progress.update(2, 97280, 21000);
    QCOMPARE(progress.percent(), 100);
    progress.update(2, 0, 21000);
    progress.update(0, 0, 21000);
    QVERIFY(!progress.isBusy());
    QCOMPARE(textAt(progress, 99000), QString("log.bin was sent"));
}

void TestTransferProgress::wordingsForLessRoom() {
    TransferProgress progress;
    progress.announce("log.bin", 102400);
    QCOMPARE(progress.wordings(0), (QStringList{"log.bin: waiting for the instrument", "Waiting"}));
    progress.update(1, 102400, 0);
    QCOMPARE(progress.wordings(9000), (QStringList{"0 bytes of 100.0 kB", "0 bytes"}));
    progress.update(2, 5120, 1000);
    QCOMPARE(progress.wordings(1000), (QStringList{"5.0 kB of 100.0 kB, 5.0 kB/s, 20 s left",
                                                   "5.0 kB, 5.0 kB/s, 20 s left", "20 s left"}));
    progress.update(0, 0, 2000);
    QCOMPARE(progress.wordings(2000), (QStringList{"log.bin: only 5.0 kB of 100.0 kB arrived",
                                                   "only 5.0 kB of 100.0 kB", "Not complete"}));
    progress.update(1, 1000, 0);
    progress.update(2, 1022, 1000);
    QCOMPARE(progress.wordings(1000), (QStringList{"Receiving: 1020 bytes, 1020 bytes/s",
                                                   "1020 bytes, 1020 bytes/s", "1020 bytes"}));
    progress.update(0, -4, 1000);
    QCOMPARE(progress.wordings(0), (QStringList{"Receiving: Too Noisy", "Too Noisy"}));
}

void TestTransferProgress::receiving() {
    TransferProgress progress;
    progress.update(1, 1000, 0);
    QCOMPARE(progress.state(), State::Receiving);
    QCOMPARE(progress.percent(), -1);
    QCOMPARE(textAt(progress, 0), QString("Receiving: 0 bytes"));
    // The count is the block's length field, two above its data.
    progress.update(2, 1022, 250);
    progress.update(2, 1022, 500);
    QCOMPARE(textAt(progress, 1000), QString("Receiving: 2.0 kB, 2.0 kB/s"));
    progress.update(0, 0, 1000);
    QCOMPARE(textAt(progress, 1000), QString("Received 2.0 kB"));
}

void TestTransferProgress::outcomes_data() {
    QTest::addColumn<int>("result");
    QTest::addColumn<QString>("text");
    QTest::newRow("time-out") << -1 << "Timeout";
    QTest::newRow("abort here") << -2 << "Abort";
    QTest::newRow("abort there") << -3 << "Abort";
    QTest::newRow("noise") << -4 << "Too Noisy";
    QTest::newRow("sequence") << -5 << "Dropped Packet";
    QTest::newRow("anything else") << -9 << "ERROR @1";
}

void TestTransferProgress::outcomes() {
    QFETCH(const int, result);
    QFETCH(const QString, text);
    TransferProgress progress;
    progress.announce("a", 2048);
    progress.update(1, 2048, 0);
    progress.update(2, 1020, 0);
    progress.update(0, result, 0);
    QCOMPARE(progress.state(), State::Ended);
    QCOMPARE(textAt(progress, 0), "Sending a: " + text);
    progress.update(1, 1000, 0);
    progress.update(0, result, 0);
    QCOMPARE(textAt(progress, 0), "Receiving: " + text);
}

/// A success of the transfer, but not of the operator.
void TestTransferProgress::shortCount() {
    TransferProgress progress;
    progress.announce("a", 2048);
    progress.update(1, 2048, 0);
    progress.update(2, 1020, 0);
    progress.update(0, 0, 0);
    QCOMPARE(progress.state(), State::Ended);
    QCOMPARE(textAt(progress, 0), QString("a: only 1020 bytes of 2.0 kB arrived"));
}

void TestTransferProgress::whatIsNotAnnouncedIsReceived() {
    TransferProgress progress;
    progress.announce("a", 1000);
    progress.update(1, 1000, 0);
    QCOMPARE(progress.state(), State::Sending);
    progress.update(0, -1, 0);
    progress.update(1, 1000, 0);
    QCOMPARE(progress.state(), State::Receiving);
}

void TestTransferProgress::aFileFromTheInstrumentComesFirst() {
    TransferProgress progress;
    progress.announce("a", 50);
    progress.update(1, 1000, 0);
    QCOMPARE(progress.state(), State::Receiving);
    progress.update(0, 0, 0);
    QCOMPARE(progress.state(), State::Waiting);
    QCOMPARE(textAt(progress, 0), QString("a: waiting for the instrument"));
    progress.update(1, 50, 0);
    QCOMPARE(progress.state(), State::Sending);
}

void TestTransferProgress::givenUp() {
    TransferProgress progress;
    progress.announce("a", 50);
    progress.giveUp("Abort");
    QVERIFY(!progress.isBusy());
    QCOMPARE(textAt(progress, 0), QString("a was not sent: Abort"));
    // The instrument asked for it just before.
    progress.update(1, 50, 0);
    QCOMPARE(progress.state(), State::Sending);
    progress.update(0, -2, 0);
    QCOMPARE(textAt(progress, 0), QString("Sending a: Abort"));
}

void TestTransferProgress::strayStatuses() {
    TransferProgress progress;
    progress.update(2, 1022, 0);
    progress.update(0, -1, 0);
    progress.update(7, 7, 0);
    QCOMPARE(progress.state(), State::None);
    progress.update(1, 1000, 0);
    progress.update(2, 0, 0);
    progress.update(2, -5, 0);
    QCOMPARE(textAt(progress, 9000), QString("Receiving: 0 bytes"));
    progress.announce("empty", 0);
    progress.update(1, 0, 0);
    QCOMPARE(progress.percent(), -1);
    progress.update(2, 0, 0);
    progress.update(0, 0, 0);
    QCOMPARE(textAt(progress, 0), QString("empty was sent"));
}

void TestTransferProgress::suggestedNames_data() {
    QTest::addColumn<QString>("origin");
    QTest::addColumn<QString>("name");
    QTest::newRow("a port") << "ttyUSB0"
                            << "ttyUSB0 now.bin";
    QTest::newRow("a path") << "North@/dev/pts/3"
                            << "North@ dev pts 3 now.bin";
    QTest::newRow("upwards") << "../../etc/passwd"
                             << "etc passwd now.bin";
    QTest::newRow("hidden") << "...x"
                            << "x now.bin";
    QTest::newRow("backslashes") << "C:\\x"
                                 << "C x now.bin";
    QTest::newRow("control characters") << "a\n\tb\x7f"
                                        << "a b now.bin";
    QTest::newRow("right to left") << QString("a\u202Eb") << "a b now.bin";
    QTest::newRow("nothing") << ""
                             << "instrument now.bin";
    QTest::newRow("only dots") << "../.."
                               << "instrument now.bin";
    QTest::newRow("long") << QString(500, 'x') << QString(60, 'x') + " now.bin";
}

void TestTransferProgress::suggestedNames() {
    QFETCH(const QString, origin);
    QFETCH(const QString, name);
    QCOMPARE(receivedfile::suggestedName(origin, "now"), name);
}

void TestTransferProgress::saving() {
    const QTemporaryDir folder;
    const QString path = folder.filePath("file");
    const QByteArray contents("a\0b", 3);
    QCOMPARE(receivedfile::save(path, contents), QString());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), contents);
    // Nothing else stays behind, also when it fails.
    QVERIFY(!receivedfile::save(folder.filePath("no/such/folder"), contents).isEmpty());
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files), QStringList("file"));
}

void TestTransferProgress::savingReplacesAWholeFileOrNothing() {
    const QTemporaryDir folder;
    const QString path = folder.filePath("file");
    QCOMPARE(receivedfile::save(path, "old"), QString());
    QCOMPARE(receivedfile::save(path, "new"), QString());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("new"));
    const QString pipe = folder.filePath("pipe");
    QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
    QCOMPARE(receivedfile::save(pipe, "x"), QString("not an ordinary file"));
    QCOMPARE(receivedfile::save(folder.path(), "x"), QString("not an ordinary file"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::System),
             (QStringList{"file", "pipe"}));
    QVERIFY(!QFileInfo(pipe).isFile());
}

void TestTransferProgress::filesUntilTheyAreSaved() {
    UnsavedFiles files;
    QVERIFY(files.isEmpty());
    QVERIFY(files.add({"a", "first"}));
    QVERIFY(files.add({"b", ""}));
    QCOMPARE(files.count(), 2);
    QCOMPARE(files.first().suggestedName, QString("a"));
    QCOMPARE(files.first().contents, QByteArray("first"));
    files.removeFirst();
    QCOMPARE(files.first().suggestedName, QString("b"));
    files.clear();
    QVERIFY(files.isEmpty());
}

void TestTransferProgress::memoryForThemIsBounded() {
    UnsavedFiles files;
    for (int i = 0; i < 20; ++i)
        QVERIFY(files.add({"a", "x"}));
    QVERIFY(!files.add({"a", ""}));
    files.removeFirst();
    QVERIFY(files.add({"a", "x"}));
    files.clear();

    // Twice the largest file there is fits, three times does not; what goes makes room.
    const QByteArray largest(66844680, '\0');
    QVERIFY(files.add({"a", largest}));
    QVERIFY(files.add({"a", largest}));
    QVERIFY(!files.add({"a", largest}));
    QVERIFY(files.add({"a", QByteArray(134217728 - 2 * 66844680, '\0')}));
    QVERIFY(!files.add({"a", "x"}));
    QVERIFY(files.add({"a", ""}));
    files.removeFirst();
    QVERIFY(files.add({"a", largest}));
    files.clear();
    QVERIFY(files.add({"a", largest}));
}

int main(int argc, char** argv) {
    return runTest<TestTransferProgress>(argc, argv);
}

#include "test_transfer_progress.moc"
