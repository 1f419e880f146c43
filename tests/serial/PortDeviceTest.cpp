#include "PortDevice.h"
#include "ConnectGX7100Serial.h"
#include "PtyLine.h"
#include "TestEnvironment.h"

#include <QFileInfo>
#include <QSignalSpy>
#include <QTemporaryFile>

#include <sys/stat.h>
#include <unistd.h>

/// What the device of a port is asked beside QSerialPort, and what the operator is told about it.
class PortDeviceTest : public QObject {
    Q_OBJECT

private slots:
    void device_of_a_port();
    void advice_data();
    void advice();
    void a_forbidden_port_is_told_in_one_line();
    void a_missing_port_is_told_nothing_about();
    void lost_or_only_failed_data();
    void lost_or_only_failed();
    void a_port_that_offers_nothing_is_left_alone();
};

namespace {

/// What the program writes to standard output while this lives.
class StandardOutput {
public:
    StandardOutput() {
        m_file.open();
        fflush(stdout);
        m_saved = dup(STDOUT_FILENO);
        dup2(m_file.handle(), STDOUT_FILENO);
    }
    StandardOutput(const StandardOutput&) = delete;
    StandardOutput& operator=(const StandardOutput&) = delete;
    ~StandardOutput() { restore(); }

    QByteArray text() {
        restore();
        m_file.seek(0);
        return m_file.readAll();
    }

private:
    void restore() {
        if (m_saved < 0)
            return;
        fflush(stdout);
        dup2(m_saved, STDOUT_FILENO);
        close(m_saved);
        m_saved = -1;
    }

    QTemporaryFile m_file;
    int m_saved = -1;
};

/// No user at all, for those who may do anything.
class NobodyForAWhile {
public:
    NobodyForAWhile() {
        if (m_user == 0 && seteuid(65534) != 0)
            qFatal("cannot become nobody");
    }
    NobodyForAWhile(const NobodyForAWhile&) = delete;
    NobodyForAWhile& operator=(const NobodyForAWhile&) = delete;
    ~NobodyForAWhile() {
        if (seteuid(m_user) != 0)
            qFatal("cannot become myself again");
    }

private:
    const uid_t m_user = geteuid();
};

QByteArray outputOfConnecting(const QString& port) {
    ConnectGX7100Serial link(nullptr);
    QSignalSpy disconnected(&link, &ConnectGX7100::disconnected);
    StandardOutput output;
    {
        const NobodyForAWhile nobody;
        link.Connect(port);
    }
    const QByteArray text = output.text();
    return disconnected.size() == 1 && !link.IsOpen() ? text : "no single disconnected()";
}

} // namespace

void PortDeviceTest::device_of_a_port() {
    QCOMPARE(portdevice::path(QStringLiteral("ttyUSB0")), QStringLiteral("/dev/ttyUSB0"));
    QCOMPARE(portdevice::path(QStringLiteral("/dev/pts/3")), QStringLiteral("/dev/pts/3"));
}

void PortDeviceTest::advice_data() {
    QTest::addColumn<QString>("group");
    QTest::addColumn<int>("permissions");
    QTest::addColumn<QString>("advice");

    const QString belongs = QStringLiteral(
        "Cannot open /dev/ttyUSB0: permission denied. The device belongs to the group ");
    QTest::newRow("a group to join")
        << "dialout" << 0x6060
        << belongs +
               "dialout; join it with \"sudo usermod -aG dialout $USER\", then log out and in "
               "again.";
    const QString askFor = QStringLiteral("; ask the administrator for access.");
    QTest::newRow("a group that is never joined") << "root" << 0x6060 << belongs + "root" + askFor;
    QTest::newRow("a group without a name") << "" << 0x6060 << belongs + "?" + askFor;
    QTest::newRow("a group that may not use it") << "uucp" << 0x6000 << belongs + "uucp" + askFor;
    QTest::newRow("a group that may only look") << "uucp" << 0x6040 << belongs + "uucp" + askFor;
}

void PortDeviceTest::advice() {
    QFETCH(const QString, group);
    QFETCH(const int, permissions);
    QFETCH(const QString, advice);
    QCOMPARE(portdevice::permissionAdvice(QStringLiteral("/dev/ttyUSB0"), group,
                                          QFileDevice::Permissions(permissions)),
             advice);
}

void PortDeviceTest::a_forbidden_port_is_told_in_one_line() {
    const PtyLine line;
    const QByteArray device = line.portName().toLatin1();
    QVERIFY(!portdevice::isForbidden(line.portName()));
    QCOMPARE(chmod(device.constData(), 0), 0);

    const QByteArray text = outputOfConnecting(line.portName());
    QVERIFY2(text.startsWith("Cannot open " + device + ": permission denied. "), text.constData());
    QVERIFY2(text.contains(QFileInfo(line.portName()).group().toLatin1()), text.constData());
    QCOMPARE(text.count('\n'), 1);
    QVERIFY(text.endsWith(".\n"));
}

void PortDeviceTest::a_missing_port_is_told_nothing_about() {
    QCOMPARE(outputOfConnecting(QStringLiteral("/dev/no-such-port")), "");
    QVERIFY(!portdevice::isForbidden(QStringLiteral("/dev/no-such-port")));
    // Nothing was chosen, as there was nothing to choose from.
    QCOMPARE(outputOfConnecting(QString()), "");
}

void PortDeviceTest::lost_or_only_failed_data() {
    QTest::addColumn<QSerialPort::SerialPortError>("error");
    QTest::addColumn<bool>("lostWithLine");
    QTest::addColumn<bool>("lostWithoutLine");

    QTest::newRow("no error") << QSerialPort::NoError << false << false;
    QTest::newRow("nothing in time") << QSerialPort::TimeoutError << false << false;
    QTest::newRow("not offered") << QSerialPort::UnsupportedOperationError << false << false;
    QTest::newRow("full, or gone") << QSerialPort::ResourceError << false << true;
    QTest::newRow("cannot be read") << QSerialPort::ReadError << true << true;
    QTest::newRow("cannot be written") << QSerialPort::WriteError << true << true;
    QTest::newRow("unknown") << QSerialPort::UnknownError << true << true;
}

void PortDeviceTest::lost_or_only_failed() {
    QFETCH(const QSerialPort::SerialPortError, error);
    QFETCH(const bool, lostWithLine);
    QFETCH(const bool, lostWithoutLine);

    PtyLine line;
    QSerialPort port(line.portName());
    QVERIFY(port.open(QIODevice::ReadWrite));
    QCOMPARE(portdevice::isLost(port, error), lostWithLine);
    line.unplug();
    QCOMPARE(portdevice::isLost(port, error), lostWithoutLine);
}

void PortDeviceTest::a_port_that_offers_nothing_is_left_alone() {
    PtyLine line;
    QSerialPort port(line.portName());
    QVERIFY(port.open(QIODevice::ReadWrite));
    portdevice::requestLowLatency(port);
    port.write("here;");
    port.flush();
    portdevice::drain(port, std::chrono::hours(1));
    QTRY_COMPARE_WITH_TIMEOUT(line.received(), "here;", 20000);
    QCOMPARE(port.error(), QSerialPort::NoError);
}

int main(int argc, char** argv) {
    return runTest<PortDeviceTest>(argc, argv);
}

#include "PortDeviceTest.moc"
