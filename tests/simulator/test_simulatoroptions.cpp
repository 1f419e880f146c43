// What the arguments of gx7100sim mean, and what it says of wrong ones.

#include "SimulatorOptions.h"
#include "TestEnvironment.h"

#include <QTemporaryFile>

class TestSimulatorOptions : public QObject {
    Q_OBJECT

private slots:
    void defaults();
    void given();
    void sameSeedSameStart();
    void complaints_data();
    void complaints();
    void serialLine();
    void help();
    void version();
};

namespace {

QStringList withProgram(const QStringList& arguments) {
    return QStringList{"gx7100sim"} + arguments;
}

SimulatorOptions parsed(const QStringList& arguments) {
    const auto result = SimulatorOptions::parse(withProgram(arguments));
    if (const auto* message = std::get_if<SimulatorOptions::Message>(&result))
        qFatal("%s", qPrintable(message->text));
    return std::get<SimulatorOptions>(result);
}

SimulatorOptions::Message message(const QStringList& arguments) {
    const auto result = SimulatorOptions::parse(withProgram(arguments));
    const auto* text = std::get_if<SimulatorOptions::Message>(&result);
    return text ? *text : SimulatorOptions::Message{"it was accepted", -1};
}

} // namespace

void TestSimulatorOptions::defaults() {
    const SimulatorOptions options = parsed({});
    QCOMPARE(options.address, QHostAddress(QHostAddress::Any));
    QCOMPARE(options.port, quint16{7100});
    QCOMPARE(options.simulator.updatesPerSecond, 4.0);
    QVERIFY(options.simulator.faults.empty());
    QVERIFY(options.simulator.instrument.name.empty());
    QVERIFY(options.announcements.isEmpty());
    QVERIFY(!options.serial);
    QVERIFY(options.simulator.instrument.page == PageId::Home);
}

void TestSimulatorOptions::given() {
    const SimulatorOptions options = parsed(
        {"--listen",   "::1",          "--port",  "0",          "--rate",     "0.5",
         "--seed",     "4294967295",   "--page",  "graphics",   "--name",     "Nordpumpe \u00B5",
         "--fault",    "single-bytes", "--fault", "half-frame", "--announce", "Pumpe \u00B5",
         "--announce", "unit 2"});
    QCOMPARE(options.announcements, (QStringList{"Pumpe \u00B5", "unit 2"}));
    QCOMPARE(options.address, QHostAddress("::1"));
    QCOMPARE(options.port, quint16{0});
    QCOMPARE(options.simulator.updatesPerSecond, 0.5);
    QCOMPARE(options.simulator.instrument.seed, 4294967295U);
    QVERIFY(options.simulator.instrument.page == PageId::Graphics);
    QCOMPARE(QString::fromStdString(options.simulator.instrument.name),
             QString("Nordpumpe \u00B5"));
    QCOMPARE(options.simulator.faults, (std::vector<std::string>{"single-bytes", "half-frame"}));
}

void TestSimulatorOptions::sameSeedSameStart() {
    const InstrumentSettings one = parsed({"--seed", "3"}).simulator.instrument;
    const InstrumentSettings other = parsed({"--seed", "3"}).simulator.instrument;
    QCOMPARE(Instrument(one).updatePacket(), Instrument(other).updatePacket());
    QVERIFY(one.clock == std::chrono::hours(10)); // never the time of day
}

void TestSimulatorOptions::complaints_data() {
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("mentions");
    const auto row = [](const QStringList& arguments, const char* mentions) {
        QTest::newRow(qPrintable(arguments.join(' '))) << arguments << QString(mentions);
    };
    row({"--port", "65536"}, "port");
    row({"--port", "-1"}, "port");
    row({"--port", "seven"}, "port");
    row({"--port", ""}, "port");
    row({"--rate", "-0.1"}, "rate");
    row({"--rate", "1001"}, "rate");
    row({"--rate", "nan"}, "rate");
    row({"--rate", "fast"}, "rate");
    row({"--seed", "-1"}, "seed");
    row({"--serial", "--baud", "-1"}, "speed");
    row({"--serial", "--baud", "4000001"}, "speed");
    row({"--serial", "--baud", "fast"}, "speed");
    row({"--serial", "--line-fault", "drops=2"}, "drops=2");
    row({"--line-fault", "worms"}, "worms");
    row({"--serial", "--file", "/no/such/file"}, "/no/such/file");
    row({"--seed", "4294967296"}, "seed");
    row({"--seed", "x"}, "seed");
    row({"--page", "keyboard"}, "\"keyboard\"");
    row({"--page", ""}, "home, text, entry, graphics, keys, messages");
    row({"--fault", "gremlins"}, "\"gremlins\"");
    row({"--announce", ""}, "1 to 63 bytes");
    row({"--announce", QString(62, 'x') + "\u00B5"}, "64");
    row({"--listen", "localhost"}, "\"localhost\"");
    row({"--listen", "300.1.2.3"}, "\"300.1.2.3\"");
    row({"--listen", ""}, "address");
    row({"--nonsense"}, "nonsense");
    row({"--port"}, "port");
    row({"stray"}, "\"stray\"");
}

void TestSimulatorOptions::complaints() {
    QFETCH(QStringList, arguments);
    QFETCH(QString, mentions);
    const SimulatorOptions::Message complaint = message(arguments);
    QCOMPARE(complaint.exitCode, 2);
    QVERIFY2(complaint.text.startsWith("gx7100sim: "), qPrintable(complaint.text));
    QVERIFY2(complaint.text.contains(mentions), qPrintable(complaint.text));
    QVERIFY2(complaint.text.endsWith("--help\".\n"), qPrintable(complaint.text));
}

void TestSimulatorOptions::serialLine() {
    const SimulatorOptions plain = parsed({"--serial", "--seed", "3", "--rate", "0.5"});
    QVERIFY(plain.serial);
    QCOMPARE(plain.serial->line.baud, 57600);
    QCOMPARE(plain.serial->line.seed, 3U);
    QCOMPARE(plain.serial->instrument.seed, 3U);
    QCOMPARE(plain.serial->updatesPerSecond, 0.5);
    QVERIFY(!plain.serial->file.isEmpty());

    QTemporaryFile file;
    QVERIFY(file.open());
    file.write(QByteArray("a\0b", 3));
    file.close();
    const SimulatorOptions options =
        parsed({"--serial", "--baud", "0", "--line-fault", "drops=0.5", "--line-fault",
                "reply=3@2x6", "--page", "entry", "--file", file.fileName()});
    QVERIFY(options.serial);
    QCOMPARE(options.serial->line.baud, 0);
    QCOMPARE(options.serial->line.faults.drops, 0.5);
    QCOMPARE(options.serial->line.faults.replyTimes, 6);
    QVERIFY(options.serial->instrument.page == PageId::Entry);
    QCOMPARE(options.serial->file, QByteArray("a\0b", 3));
}

void TestSimulatorOptions::help() {
    for (const char* option : {"--help", "-h"}) {
        const SimulatorOptions::Message help = message({option});
        QCOMPARE(help.exitCode, 0);
        for (const char* word : {"--listen",
                                 "--port",
                                 "--rate",
                                 "--seed",
                                 "--page",
                                 "--name",
                                 "--announce",
                                 "--fault",
                                 "home, text, entry, graphics, keys, messages",
                                 "single-bytes",
                                 "stray-bytes",
                                 "unknown-tags",
                                 "unknown-types",
                                 "truncated-items",
                                 "oversized-items",
                                 "half-frame",
                                 "abrupt-close",
                                 "--serial",
                                 "--baud",
                                 "--line-fault",
                                 "--file",
                                 "bit-errors=RATE",
                                 "drops=RATE",
                                 "duplicates=RATE",
                                 "stalls=RATE",
                                 "wrong-number=BLOCK",
                                 "reply=CODE@BLOCK[xTIMES]",
                                 "abort=BLOCK",
                                 "never-answers"})
            QVERIFY2(help.text.contains(word), word);
    }
}

void TestSimulatorOptions::version() {
    QCoreApplication::setApplicationVersion("9.8");
    const SimulatorOptions::Message version = message({"--version"});
    QCOMPARE(version.exitCode, 0);
    QCOMPARE(version.text, QString("gx7100sim 9.8\n"));
}

int main(int argc, char** argv) {
    return runTest<TestSimulatorOptions>(argc, argv);
}

#include "test_simulatoroptions.moc"
