#include "Announcer.h"
#include "SimulatorOptions.h"
#include "TCrc32.h"
#include "TerminationSignals.h"
#include "Translations.h"

#include <QCoreApplication>

#include <cstdio>

namespace {

/// Written out at once: scripts wait for these lines.
void print(FILE* stream, const QString& text) {
    std::fputs(text.toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

QString listeningLine(const SimulatorServer& server) {
    if (server.address() == QHostAddress(QHostAddress::Any))
        return SimulatorOptions::tr("Listening on all addresses, port %1\n").arg(server.port());
    return SimulatorOptions::tr("Listening on %1, port %2\n")
        .arg(server.address().toString())
        .arg(server.port());
}

void printEvents(const SimulatorServer& server) {
    QObject::connect(&server, &SimulatorServer::connected, &server,
                     [](int connection, const QString& peer) {
                         print(stdout, SimulatorOptions::tr("Connected: instrument %1, from %2\n")
                                           .arg(connection)
                                           .arg(peer));
                     });
    QObject::connect(&server, &SimulatorServer::disconnected, &server, [](int connection) {
        print(stdout, SimulatorOptions::tr("Disconnected: instrument %1\n").arg(connection));
    });
}

void printEvents(const Announcer& announcer) {
    QObject::connect(&announcer, &Announcer::announced, &announcer, [](const QString& name) {
        print(stdout, SimulatorOptions::tr("Announced: %1\n").arg(name));
    });
    QObject::connect(&announcer, &Announcer::failed, &announcer, [](const QString& message) {
        print(stderr, SimulatorOptions::tr("gx7100sim: %1\n").arg(message));
    });
}

QString outcomeText(FileTransfer::Outcome outcome) {
    switch (outcome) {
    case FileTransfer::Outcome::Done:
        return SimulatorOptions::tr("done");
    case FileTransfer::Outcome::TimedOut:
        return SimulatorOptions::tr("timed out");
    case FileTransfer::Outcome::TooNoisy:
        return SimulatorOptions::tr("too noisy");
    case FileTransfer::Outcome::OutOfSequence:
        return SimulatorOptions::tr("out of sequence");
    case FileTransfer::Outcome::Aborted:
        return SimulatorOptions::tr("aborted here");
    case FileTransfer::Outcome::AbortedByPeer:
        return SimulatorOptions::tr("aborted by the program");
    }
    return {};
}

void printEvents(const SerialSimulator& simulator) {
    QObject::connect(&simulator, &SerialSimulator::connected, &simulator,
                     [] { print(stdout, SimulatorOptions::tr("Connected\n")); });
    QObject::connect(&simulator, &SerialSimulator::disconnected, &simulator,
                     [] { print(stdout, SimulatorOptions::tr("Disconnected\n")); });
    QObject::connect(&simulator, &SerialSimulator::fileReceived, &simulator,
                     [](const QByteArray& file) {
                         TCrc32 crc(0xFFFFFFFF);
                         crc.Add(file.toStdString());
                         print(stdout, SimulatorOptions::tr("File received: %1 bytes, CRC-32 %2\n")
                                           .arg(file.size())
                                           .arg(~crc.Value(), 8, 16, QLatin1Char('0')));
                     });
    QObject::connect(
        &simulator, &SerialSimulator::transferEnded, &simulator, [](FileTransfer::Outcome outcome) {
            print(stdout, SimulatorOptions::tr("File transfer: %1\n").arg(outcomeText(outcome)));
        });
}

int serveSerialLine(const SerialSimulatorSettings& settings) {
    SerialSimulator simulator(settings);
    printEvents(simulator);
    if (!simulator.start()) {
        print(stderr,
              SimulatorOptions::tr("gx7100sim: no serial port: %1\n").arg(simulator.errorString()));
        return 1;
    }
    print(stdout, SimulatorOptions::tr("Serial port: %1\n").arg(simulator.portName()));
    return QCoreApplication::exec();
}

int serveNetwork(const SimulatorOptions& options) {
    SimulatorServer server(options.simulator);
    printEvents(server);
    if (!server.listen(options.address, options.port)) {
        print(stderr, SimulatorOptions::tr("gx7100sim: cannot listen on %1, port %2: %3\n")
                          .arg(options.address.toString())
                          .arg(options.port)
                          .arg(server.errorString()));
        return 1;
    }
    print(stdout, listeningLine(server));
    Announcer announcer;
    printEvents(announcer);
    for (const QString& name : options.announcements)
        announcer.announce(name, server.port());
    return QCoreApplication::exec();
}

/// Serves until the system wants the program to end; the program's exit code.
int serve(const SimulatorOptions& options) {
    const TerminationSignals termination;
    QObject::connect(&termination, &TerminationSignals::terminationRequested, qApp,
                     &QCoreApplication::quit);
    return options.serial ? serveSerialLine(*options.serial) : serveNetwork(options);
}

} // namespace

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("gx7100sim"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.1"));
    const Translations translations;

    const auto parsed = SimulatorOptions::parse(QCoreApplication::arguments());
    if (const auto* message = std::get_if<SimulatorOptions::Message>(&parsed)) {
        print(message->exitCode == 0 ? stdout : stderr, message->text);
        return message->exitCode;
    }
    return serve(*std::get_if<SimulatorOptions>(&parsed));
}
