// What an operator is told about a file transfer, and where a file from an instrument is put.

#include "ReceivedFile.h"
#include "TestEnvironment.h"
#include "TransferProgress.h"

using State = TransferProgress::State;

class TestTransferProgress : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }
    void sending();
    void receiving();
    void outcomes_data();
    void outcomes();
    void whatIsNotAnnouncedIsReceived();
    void aFileFromTheInstrumentComesFirst();
    void givenUp();
    void strayStatuses();
    void suggestedNames_data();
    void suggestedNames();
    void saving();
};

void TestTransferProgress::sending() {
    TransferProgress progress;
    QVERIFY(!progress.isBusy());
    QCOMPARE(progress.text(0), QString());
    progress.announce("log.bin", 102400);
    QVERIFY(progress.isBusy());
    QCOMPARE(progress.percent(), -1);
    QCOMPARE(progress.text(0), QString("log.bin: waiting for the instrument"));
    progress.update(1, 102400, 1000);
    QCOMPARE(progress.state(), State::Sending);
    QCOMPARE(progress.percent(), 0);
    QCOMPARE(progress.text(5000), QString("0 bytes of 100.0 kB"));
    progress.update(2, 5120, 2000);
    QCOMPARE(progress.percent(), 5);
    QCOMPARE(progress.text(1400), QString("5.0 kB of 100.0 kB"));
    QCOMPARE(progress.text(2000), QString("5.0 kB of 100.0 kB, 5.0 kB/s, 20 s left"));
    QCOMPARE(progress.text(11000), QString("5.0 kB of 100.0 kB, 512 bytes/s, 3:11 left"));
    progress.update(2, 97280, 21000);
    QCOMPARE(progress.percent(), 100);
    progress.update(2, 0, 21000);
    progress.update(0, 0, 21000);
    QVERIFY(!progress.isBusy());
    QCOMPARE(progress.text(99000), QString("log.bin was sent"));
}

void TestTransferProgress::receiving() {
    TransferProgress progress;
    progress.update(1, 1000, 0);
    QCOMPARE(progress.state(), State::Receiving);
    QCOMPARE(progress.percent(), -1);
    QCOMPARE(progress.text(0), QString("Receiving: 0 bytes"));
    // The count is the block's length field, two above its data.
    progress.update(2, 1022, 250);
    progress.update(2, 1022, 500);
    QCOMPARE(progress.text(1000), QString("Receiving: 2.0 kB, 2.0 kB/s"));
    progress.update(0, 0, 1000);
    QCOMPARE(progress.text(1000), QString("Received 2.0 kB"));
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
    // A success of the transfer, but not of the operator.
    QTest::newRow("short count") << 0 << "the instrument took only 1020 bytes of 2.0 kB";
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
    QCOMPARE(progress.text(0), "Sending a: " + text);
    if (result == 0)
        return;
    progress.update(1, 1000, 0);
    progress.update(0, result, 0);
    QCOMPARE(progress.text(0), "Receiving: " + text);
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
    QCOMPARE(progress.text(0), QString("a: waiting for the instrument"));
    progress.update(1, 50, 0);
    QCOMPARE(progress.state(), State::Sending);
}

void TestTransferProgress::givenUp() {
    TransferProgress progress;
    progress.announce("a", 50);
    progress.giveUp("Abort");
    QVERIFY(!progress.isBusy());
    QCOMPARE(progress.text(0), QString("a was not sent: Abort"));
    progress.update(1, 50, 0);
    QCOMPARE(progress.state(), State::Receiving);
}

void TestTransferProgress::strayStatuses() {
    TransferProgress progress;
    progress.update(2, 1022, 0);
    progress.update(0, -1, 0);
    progress.update(7, 7, 0);
    QCOMPARE(progress.state(), State::None);
    progress.update(1, 0, 0);
    progress.update(2, 0, 0);
    progress.update(2, -5, 0);
    QCOMPARE(progress.text(9000), QString("Receiving: 0 bytes"));
    progress.announce("empty", 0);
    progress.update(1, 0, 0);
    QCOMPARE(progress.percent(), -1);
    progress.update(2, 0, 0);
    progress.update(0, 0, 0);
    QCOMPARE(progress.text(0), QString("empty was sent"));
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

int main(int argc, char** argv) {
    return runTest<TestTransferProgress>(argc, argv);
}

#include "test_transfer_progress.moc"
