#include "ConnectGX7100Serial.h"
#include "PtyLine.h"
#include "TermSerialThread.h"
#include "TestEnvironment.h"

#include <QElapsedTimer>
#include <QSignalSpy>

#include <random>
#include <thread>

/// Everything that other threads may do to a worker, at any moment. What goes wrong here is for the
/// thread and address sanitizers to see; that it ends at all, and in order, is seen without them.
class SerialRaceTest : public QObject {
    Q_OBJECT

private slots:
    void sends_stops_and_ends_at_any_moment();
    void several_threads_send_to_one_worker();
    void deletion_at_any_moment();
    void deletion_waits_no_longer_than_a_wake_up();
    void deletion_leaves_no_thread_and_no_descriptor();
};

namespace {

constexpr int patience = 20000;

/// What an instrument might send, of any kind and in any state of a transfer.
const QByteArrayList& chatter() {
    static const QByteArrayList list = {
        QByteArray::fromHex("540a0002 6869 520a0003 010203"),
        QByteArray::fromHex("4d0a0001 21"),
        QByteArray::fromHex("580a0001 4b"),
        QByteArray::fromHex("580a0001 4c 580a0001 05"),
        QByteArray::fromHex("580a0001 06"),
        QByteArray::fromHex("580a0001 00"),
        QByteArray::fromHex("580a0008 1d 0001 0002 93b2 05"),
        QByteArray::fromHex("470a"),
    };
    return list;
}

SerialTimings quick() {
    SerialTimings timings;
    timings.wakeUp = 3;
    timings.transfer = {20, 5};
    return timings;
}

int entries(const char* folder) {
    return static_cast<int>(QDir(QString::fromLatin1(folder))
                                .entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::System)
                                .size());
}

} // namespace

void SerialRaceTest::sends_stops_and_ends_at_any_moment() {
    std::mt19937 random(7100);
    PtyLine line;
    for (int round = 0; round < 60; ++round) {
        ConnectGX7100Serial link(nullptr, quick());
        QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
        link.Connect(line.portName());
        QVERIFY(link.IsOpen());
        for (int step = 0; step < 40; ++step) {
            switch (random() % 7) {
            case 0:
                link.slotTo(std::string("\0\0\0\0KEYS\1\2", 10));
                break;
            case 1:
                link.slotTo(std::string("\0\0\0\0FXTOCATCH\nfile\0x", 20));
                break;
            case 2:
                link.stopXfer();
                break;
            case 3:
                link.withdrawFiles();
                break;
            case 4:
                QTest::qWait(1);
                break;
            default:
                line.write(chatter()[static_cast<int>(random() % 8)]);
                break;
            }
        }
        link.Disconnect();
        QTRY_COMPARE_WITH_TIMEOUT(disconnected.size(), 1, patience);
        QVERIFY(!link.IsOpen());
    }
}

void SerialRaceTest::several_threads_send_to_one_worker() {
    PtyLine line;
    TermSerialThread worker(line.portName(), nullptr, quick());
    QVERIFY(worker.IsOpen());
    worker.start();
    constexpr int senders = 3;
    constexpr int strings = 300;
    std::vector<std::thread> threads;
    threads.reserve(senders);
    for (int sender = 0; sender < senders; ++sender) {
        threads.emplace_back([&worker, sender] {
            for (int i = 0; i < strings; ++i) {
                worker.external_send(std::string(5, static_cast<char>('a' + sender)));
                worker.addPacket("file");
                worker.withdrawFiles();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QTRY_COMPARE_WITH_TIMEOUT(line.received().size(), qsizetype{5} * senders * strings, patience);
    for (qsizetype at = 0; at < line.received().size(); at += 5)
        QCOMPARE(line.received().sliced(at, 5), QByteArray(5, line.received()[at]));
    QVERIFY(worker.IsOpen());
}

void SerialRaceTest::deletion_at_any_moment() {
    std::mt19937 random(17);
    PtyLine line;
    for (int round = 0; round < 100; ++round) {
        auto link = std::make_unique<ConnectGX7100Serial>(nullptr, quick());
        link->Connect(line.portName());
        line.write(chatter()[static_cast<int>(random() % 8)]);
        link->Send("x");
        const int moment = static_cast<int>(random() % 4);
        if (moment == 1)
            QTest::qWait(1);
        else if (moment == 2)
            link->Disconnect();
        else if (moment == 3)
            link->stopXfer();
        link.reset();
    }
    QCoreApplication::processEvents();
}

void SerialRaceTest::deletion_waits_no_longer_than_a_wake_up() {
    // The worker would sleep for an hour: whatever deletion takes, it is not that.
    SerialTimings timings;
    timings.wakeUp = 3600000;
    PtyLine line;
    auto link = std::make_unique<ConnectGX7100Serial>(nullptr, timings);
    link->Connect(line.portName());
    link->Send("here;");
    QTRY_COMPARE_WITH_TIMEOUT(line.received(), "here;", patience);
    QElapsedTimer clock;
    clock.start();
    link.reset();
    QVERIFY2(clock.elapsed() < patience, qPrintable(QString::number(clock.elapsed())));
}

void SerialRaceTest::deletion_leaves_no_thread_and_no_descriptor() {
    PtyLine line;
    const auto once = [&line] {
        ConnectGX7100Serial link(nullptr, quick());
        link.Connect(line.portName());
        link.Send("here;");
        line.clear();
        return QTest::qWaitFor([&line] { return line.received() == "here;"; }, patience);
    };
    // The first one has Qt allocate things of its own.
    QVERIFY(once());
    const int threads = entries("/proc/self/task");
    const int descriptors = entries("/proc/self/fd");
    for (int round = 0; round < 10; ++round)
        QVERIFY(once());
    QTRY_VERIFY_WITH_TIMEOUT(entries("/proc/self/task") <= threads, patience);
    QTRY_VERIFY_WITH_TIMEOUT(entries("/proc/self/fd") <= descriptors, patience);
}

int main(int argc, char** argv) {
    return runTest<SerialRaceTest>(argc, argv);
}

#include "SerialRaceTest.moc"
