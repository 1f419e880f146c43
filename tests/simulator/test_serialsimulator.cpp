// The simulated instrument on its serial port, against a program that writes byte for byte.

#include "SerialSimulator.h"
#include "TestEnvironment.h"

#include <QSignalSpy>

#include <array>
#include <fcntl.h>
#include <unistd.h>

class TestSerialSimulator : public QObject {
    Q_OBJECT

private slots:
    void announcedWithTheLastReply();
};

namespace {

constexpr int patience = 60000;

/// The program's end of the line.
class Port {
public:
    explicit Port(const QString& name)
        : m_descriptor(
              open(name.toLocal8Bit().constData(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC)) {}
    ~Port() { close(m_descriptor); }
    Port(const Port&) = delete;
    Port& operator=(const Port&) = delete;

    bool isOpen() const { return m_descriptor >= 0; }

    /// Whether the bytes come; what comes before them is passed over.
    bool awaits(const QByteArray& bytes) {
        return QTest::qWaitFor(
            [&] {
                std::array<char, 4096> buffer{};
                const ssize_t count = read(m_descriptor, buffer.data(), buffer.size());
                if (count > 0)
                    m_received.append(buffer.data(), count);
                const qsizetype at = m_received.indexOf(bytes);
                if (at >= 0)
                    m_received.remove(0, at + bytes.size());
                return at >= 0;
            },
            patience);
    }

    bool writes(const QByteArray& bytes) {
        return write(m_descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size())) ==
               bytes.size();
    }

private:
    int m_descriptor;
    QByteArray m_received;
};

} // namespace

void TestSerialSimulator::announcedWithTheLastReply() {
    SerialSimulatorSettings settings;
    settings.updatesPerSecond = 0;
    settings.line.baud = 0;
    SerialSimulator simulator(settings);
    QVERIFY(simulator.start());
    QSignalSpy connected(&simulator, &SerialSimulator::connected);
    Port port(simulator.portName());
    QVERIFY(port.isOpen());
    // The first screen is out then, and nothing waits for the transfer's end that would wake it.
    QTRY_COMPARE_WITH_TIMEOUT(connected.size(), 1, patience);

    // An empty file from the instrument: offered, accepted, one block without data, ...
    simulator.sendFile({});
    QVERIFY(port.awaits(QByteArray::fromHex("580a0002"
                                            "4c05")));
    QVERIFY(port.writes(QByteArray::fromHex("580001"
                                            "06")));
    QVERIFY(port.awaits(QByteArray::fromHex("580a0007"
                                            "1d00010002")));
    // ... which is accepted in one go with the announcement of a file for the instrument, ...
    QVERIFY(port.writes(QByteArray::fromHex("580001"
                                            "00"
                                            "590009") +
                        "ID:CATCH\n"));
    // ... and that is asked for.
    QVERIFY(port.awaits(QByteArray::fromHex("580a0001"
                                            "4b")));
}

int main(int argc, char** argv) {
    return runTest<TestSerialSimulator>(argc, argv);
}

#include "test_serialsimulator.moc"
