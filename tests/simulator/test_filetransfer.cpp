// The instrument's side of a file transfer as a dialogue: what the program sends, what the
// instrument answers, byte for byte.

#include "FileReceiver.h"
#include "FileSender.h"
#include "TestEnvironment.h"

class TestFileTransfer : public QObject {
    Q_OBJECT

private slots:
    void receives_data();
    void receives();
    void sends_data();
    void sends();
    void sendsBlocksOf1020();
    void theProgramStopsIt();
};

namespace {

using Clock = FileTransfer::Clock;
using Outcome = FileTransfer::Outcome;
using std::chrono::milliseconds;

/// What happens, in order: bytes from the program, in hexadecimal, or a wait that is over ("t").
/// What the instrument says to it is put between.
QString dialogue(FileTransfer& transfer, const QStringList& events) {
    Clock::time_point now = Clock::time_point() + std::chrono::hours(1);
    QStringList said;
    const auto listen = [&] {
        said += QString::fromLatin1(QByteArray::fromStdString(transfer.takeOutput()).toHex());
    };
    listen();
    for (const QString& event : events) {
        if (event == QLatin1String("t")) {
            now = transfer.deadline().value_or(now);
            transfer.advance(now - milliseconds(1));
            transfer.advance(now);
        } else {
            transfer.receive(QByteArray::fromHex(event.toLatin1()).toStdString(), now);
        }
        listen();
    }
    return said.join('|');
}

QString nameOf(const std::optional<Outcome>& outcome) {
    if (!outcome)
        return QStringLiteral("runs");
    switch (*outcome) {
    case Outcome::Done:
        return QStringLiteral("done");
    case Outcome::TimedOut:
        return QStringLiteral("timed out");
    case Outcome::TooNoisy:
        return QStringLiteral("too noisy");
    case Outcome::OutOfSequence:
        return QStringLiteral("out of sequence");
    case Outcome::Aborted:
        return QStringLiteral("aborted");
    case Outcome::AbortedByPeer:
        return QStringLiteral("aborted by peer");
    }
    return {};
}

LineFaults faultsOf(const QByteArray& wish) {
    LineFaults faults;
    if (!wish.isEmpty() && !addLineFault(faults, wish.toStdString()))
        qFatal("no such fault");
    return faults;
}

const Clock::time_point start = Clock::time_point() + std::chrono::hours(1);

} // namespace

void TestFileTransfer::receives_data() {
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QStringList>("events");
    QTest::addColumn<QString>("said");
    QTest::addColumn<QString>("outcome");
    QTest::addColumn<QByteArray>("file");

    const QString hi = "1d 0001 0004 6869 078d";
    const QString bad = "1d 0001 0004 6869 078c";
    const QString end1 = "1d 0001 0002 93b2";
    const QString end2 = "1d 0002 0002 cae2";
    const auto row = [](const char* name, const char* fault, const QStringList& events,
                        const char* said, const char* outcome, const char* file) {
        QTest::newRow(name) << QByteArray(fault) << events << QString(said) << QString(outcome)
                            << QByteArray(file);
    };
    row("an empty file", "", {"05", end1}, "4b|06|00", "done", "");
    row("two bytes", "", {"05", hi, end2}, "4b|06|00|00", "done", "hi");
    row("in one piece", "", {"05" + hi + end2}, "4b|060000", "done", "hi");
    row("not yet asked", "", {hi}, "4b|", "runs", "");
    row("the answer was lost", "", {"05", "05", hi, end2}, "4b|06|06|00|00", "done", "hi");
    row("asks again", "", {"t", "t", "05", end1}, "4b|4b|4b|06|00", "done", "");
    row("asks six times", "", {"t", "t", "t", "t", "t", "t"}, "4b|4b|4b|4b|4b|4b|", "timed out",
        "");
    row("no block", "", {"05", "t"}, "4b|06|", "timed out", "");
    row("half a block", "", {"05", "1d 0001 0004 68", "t"}, "4b|06||", "timed out", "");
    row("damage", "", {"05", bad, hi, end2}, "4b|06|01|00|00", "done", "hi");
    row("six times", "", {"05", bad, bad, bad, bad, bad, bad}, "4b|06|01|01|01|01|01|01",
        "too noisy", "");
    row("five times each block", "",
        {"05", bad, bad, bad, bad, bad, hi, bad, bad, bad, bad, bad, end2},
        "4b|06|01|01|01|01|01|00|01|01|01|01|01|00", "done", "hi");
    row("out of sequence", "", {"05", end2}, "4b|06|04", "out of sequence", "");
    row("a length that none has", "", {"05", "1d 0001 ffff 1d00", hi, end2}, "4b|06|01|00|00",
        "done", "hi");
    row("a length without checksum", "", {"05", "1d 0001 0001", hi, end2}, "4b|06|01|00|00", "done",
        "hi");
    row("aborts", "abort=1", {"05", hi}, "4b|06|02", "aborted", "");
    row("aborts at the end", "abort=2", {"05", hi, end2}, "4b|06|00|02", "aborted", "hi");
    row("one wrong reply", "reply=1@1", {"05", hi, hi, end2}, "4b|06|01|00|00", "done", "hi");
    row("six short blocks", "reply=3@1x6", {"05", hi, hi, hi, hi, hi, hi},
        "4b|06|03|03|03|03|03|03", "too noisy", "");
    row("no reply at all", "reply=7@1", {"05", hi, "t"}, "4b|06|07|", "timed out", "");
    row("damage called sound", "reply=0@1", {"05", bad}, "4b|06|00", "too noisy", "");
    row("never answers", "never-answers", {"05", "t", "t", "t", "t", "t", "t"}, "|||||||",
        "timed out", "");
}

void TestFileTransfer::receives() {
    QFETCH(const QByteArray, fault);
    QFETCH(const QStringList, events);
    QFETCH(const QString, said);
    QFETCH(const QString, outcome);
    QFETCH(const QByteArray, file);
    FileReceiver receiver(faultsOf(fault), {}, start);
    QCOMPARE(dialogue(receiver, events), said);
    QCOMPARE(nameOf(receiver.outcome()), outcome);
    QCOMPARE(QByteArray::fromStdString(receiver.file()), file);
    QCOMPARE(receiver.deadline().has_value(), outcome == "runs");
}

void TestFileTransfer::sends_data() {
    QTest::addColumn<QByteArray>("fault");
    QTest::addColumn<QStringList>("events");
    QTest::addColumn<QString>("said");
    QTest::addColumn<QString>("outcome");

    const QString offer = "4c05";
    const QString hi = "1d000100046869078d";
    const QString end = "1d00020002cae2";
    const auto row = [](const char* name, const char* fault, const QStringList& events,
                        const QStringList& said, const char* outcome) {
        QTest::newRow(name) << QByteArray(fault) << events << said.join('|') << QString(outcome);
    };
    row("two bytes", "", {"06", "00", "00"}, {offer, hi, end, ""}, "done");
    row("asks again", "", {"t", "t", "06"}, {offer, "05", "05", hi}, "runs");
    row("asks six times", "", {"t", "t", "t", "t", "t", "t"},
        {offer, "05", "05", "05", "05", "05", ""}, "timed out");
    row("other bytes", "", {"00 01 05", "06", "07", "00"}, {offer, "", hi, "", end}, "runs");
    row("damage", "", {"06", "01", "00"}, {offer, hi, hi, end}, "runs");
    row("short", "", {"06", "03", "00"}, {offer, hi, hi, end}, "runs");
    row("six times", "", {"06", "01", "03", "01", "03", "01", "03"},
        {offer, hi, hi, hi, hi, hi, hi, ""}, "too noisy");
    row("five times each block", "",
        {"06", "01", "01", "01", "01", "01", "00", "01", "01", "01", "01", "01", "00"},
        {offer, hi, hi, hi, hi, hi, hi, end, end, end, end, end, end, ""}, "done");
    row("the program aborts", "", {"06", "02"}, {offer, hi, ""}, "aborted by peer");
    row("out of sequence", "", {"06", "04"}, {offer, hi, ""}, "out of sequence");
    row("no reply", "", {"06", "t"}, {offer, hi, ""}, "timed out");
    row("a wrong number", "wrong-number=1", {"06"}, {offer, "1d000200046869e95f"}, "runs");
    row("aborts", "abort=2", {"06", "00"}, {offer, hi, ""}, "aborted");
    row("never answers", "never-answers", {"t", "t", "t", "t", "t", "t"},
        {"4c", "", "", "", "", "", ""}, "timed out");
}

void TestFileTransfer::sends() {
    QFETCH(const QByteArray, fault);
    QFETCH(const QStringList, events);
    QFETCH(const QString, said);
    QFETCH(const QString, outcome);
    FileSender sender("hi", faultsOf(fault), {}, start);
    QCOMPARE(dialogue(sender, events), said);
    QCOMPARE(nameOf(sender.outcome()), outcome);
    QCOMPARE(sender.deadline().has_value(), outcome == "runs");
}

void TestFileTransfer::sendsBlocksOf1020() {
    for (const std::size_t size : {0U, 1U, 1019U, 1020U, 1021U, 2040U}) {
        FileSender sender(std::string(size, 'f'), {}, {}, start);
        sender.takeOutput();
        sender.receive("\x06", start);
        std::size_t blocks = 0;
        std::size_t data = 0;
        while (!sender.outcome()) {
            const std::string block = sender.takeOutput();
            QVERIFY(block.size() >= 7 && block.size() <= 7 + 1020);
            ++blocks;
            data += block.size() - 7;
            sender.receive(std::string_view("\0", 1), start);
        }
        QCOMPARE(data, size);
        QCOMPARE(blocks, (size + 1019) / 1020 + 1);
        QCOMPARE(*sender.outcome(), Outcome::Done);
    }
}

void TestFileTransfer::theProgramStopsIt() {
    FileReceiver receiver({}, {}, start);
    receiver.stop();
    QCOMPARE(nameOf(receiver.outcome()), QString("aborted by peer"));
    receiver.receive("\x05", start);
    receiver.advance(start + std::chrono::hours(1));
    QCOMPARE(nameOf(receiver.outcome()), QString("aborted by peer"));
    QCOMPARE(receiver.takeOutput(), std::string("K"));
}

int main(int argc, char** argv) {
    return runTest<TestFileTransfer>(argc, argv);
}

#include "test_filetransfer.moc"
