#include "SimulatorOptions.h"

#include "Fault.h"
#include "SerialOptions.h"

#include <QCommandLineParser>
#include <QRandomGenerator>
#include <QTime>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr int badArguments = 2;
constexpr double highestRate = 1000;
/// What service discovery has room for.
constexpr qsizetype longestAnnouncement = 63;

using Message = SimulatorOptions::Message;

struct Options {
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            SimulatorOptions::tr("Shows this help.")};
    QCommandLineOption version{QStringLiteral("version"),
                               SimulatorOptions::tr("Shows the version.")};
    QCommandLineOption listen{QStringLiteral("listen"),
                              SimulatorOptions::tr("Address to listen on, such as 127.0.0.2 or "
                                                   "::1. Default: all, IPv4 and IPv6."),
                              SimulatorOptions::tr("address")};
    QCommandLineOption port{QStringLiteral("port"),
                            SimulatorOptions::tr("TCP port. 0 takes any free one. Default: 7100, "
                                                 "where GX7100Group looks for instruments."),
                            SimulatorOptions::tr("number"),
                            QString::number(SimulatorOptions::instrumentPort)};
    QCommandLineOption rate{QStringLiteral("rate"),
                            SimulatorOptions::tr("Screen updates a second on pages that move, up "
                                                 "to 1000. 0 updates only when a key or a message "
                                                 "has arrived. Default: 4."),
                            SimulatorOptions::tr("number"), QStringLiteral("4")};
    QCommandLineOption seed{QStringLiteral("seed"),
                            SimulatorOptions::tr("Makes the run repeat exactly, clock and "
                                                 "readings included. Default: chance, and the "
                                                 "time of day."),
                            SimulatorOptions::tr("number")};
    QCommandLineOption page{QStringLiteral("page"),
                            SimulatorOptions::tr("Page to start on; see below. Default: home."),
                            SimulatorOptions::tr("name"), QStringLiteral("home")};
    QCommandLineOption name{QStringLiteral("name"),
                            SimulatorOptions::tr("What the instruments call themselves in their "
                                                 "title bar. Default: \"Unit\" and the number of "
                                                 "the connection."),
                            SimulatorOptions::tr("text")};
    QCommandLineOption announce{QStringLiteral("announce"),
                                SimulatorOptions::tr("Announces an instrument of this name on the "
                                                     "local network, for GX7100Group to list. Can "
                                                     "be given several times."),
                                SimulatorOptions::tr("name")};
    QCommandLineOption fault{QStringLiteral("fault"),
                             SimulatorOptions::tr("Way to misbehave; see below. Can be given "
                                                  "several times."),
                             SimulatorOptions::tr("name")};
};

QString listOfPages() {
    QStringList names;
    for (const PageId page : allPages)
        names.append(QString::fromUtf8(pageName(page)));
    return names.join(QStringLiteral(", "));
}

QString helpText(const QCommandLineParser& parser) {
    QString text = parser.helpText();
    text += QLatin1Char('\n') + SimulatorOptions::tr("Pages: %1.").arg(listOfPages()) +
            QLatin1Char('\n') +
            SimulatorOptions::tr("F1 to F5 and the arrow keys turn pages, Escape goes home.\n\n"
                                 "Faults:\n");
    for (const FaultKind& kind : faultKinds()) {
        text += QStringLiteral("  %1  %2\n")
                    .arg(QString::fromUtf8(kind.name), -16)
                    .arg(SimulatorOptions::tr(kind.description));
    }
    text += QLatin1Char('\n') + SimulatorOptions::tr("Faults of a serial line:\n") +
            SerialOptions::listOfFaults();
    return text;
}

Message complaint(const QString& text) {
    return {SimulatorOptions::tr("gx7100sim: %1\nTry \"gx7100sim --help\".\n").arg(text),
            badArguments};
}

} // namespace

std::variant<SimulatorOptions, Message> SimulatorOptions::parse(const QStringList& arguments) {
    const Options options;
    QCommandLineParser parser;
    parser.setApplicationDescription(
        tr("Simulates GX-7100 instruments: every connection to its TCP port is an instrument of "
           "its own, with a screen that lives and keys that work.\n"
           "To watch one, start GX7100Group, choose \"Add connection\", type an address of this "
           "computer (such as 127.0.0.1) and connect. Ctrl+C ends the simulator."));
    parser.addOptions({options.help, options.version, options.listen, options.port, options.rate,
                       options.seed, options.page, options.name, options.announce, options.fault});
    const SerialOptions serialOptions;
    parser.addOptions(serialOptions.all());
    if (!parser.parse(arguments))
        return complaint(parser.errorText());
    if (parser.isSet(options.help))
        return Message{helpText(parser)};
    if (parser.isSet(options.version))
        return Message{
            QStringLiteral("gx7100sim %1\n").arg(QCoreApplication::applicationVersion())};
    if (!parser.positionalArguments().isEmpty())
        return complaint(tr("\"%1\" is not an option").arg(parser.positionalArguments().first()));

    SimulatorOptions result;
    if (parser.isSet(options.listen) && !result.address.setAddress(parser.value(options.listen)))
        return complaint(tr("\"%1\" is not an IPv4 or IPv6 address, such as 127.0.0.1")
                             .arg(parser.value(options.listen)));
    bool sound = false;
    result.port = parser.value(options.port).toUShort(&sound);
    if (!sound)
        return complaint(tr("the port must be a number from 0 to 65535"));
    const double rate = parser.value(options.rate).toDouble(&sound);
    if (!sound || !(rate >= 0 && rate <= highestRate))
        return complaint(tr("the rate must be a number from 0 to 1000"));
    result.simulator.updatesPerSecond = rate;
    InstrumentSettings& instrument = result.simulator.instrument;
    const auto page = pageNamed(parser.value(options.page).toStdString());
    if (!page)
        return complaint(tr("there is no page \"%1\"; pages are %2")
                             .arg(parser.value(options.page), listOfPages()));
    instrument.page = *page;
    instrument.name = parser.value(options.name).toStdString();
    if (parser.isSet(options.seed)) {
        instrument.seed = parser.value(options.seed).toUInt(&sound);
        if (!sound)
            return complaint(tr("the seed must be a number from 0 to 4294967295"));
    } else {
        instrument.seed = QRandomGenerator::system()->generate();
        instrument.clock = std::chrono::milliseconds(QTime::currentTime().msecsSinceStartOfDay());
    }
    result.announcements = parser.values(options.announce);
    for (const QString& announcement : std::as_const(result.announcements)) {
        const qsizetype size = announcement.toUtf8().size();
        if (size == 0 || size > longestAnnouncement)
            return complaint(tr("a name to announce has 1 to 63 bytes, \"%1\" has %2")
                                 .arg(announcement)
                                 .arg(size));
    }
    for (const QString& fault : parser.values(options.fault)) {
        if (!faultKindNamed(fault.toStdString()))
            return complaint(
                tr("there is no fault \"%1\"; see --help for those there are").arg(fault));
        result.simulator.faults.push_back(fault.toStdString());
    }
    SerialSimulatorSettings serial;
    serial.instrument = instrument;
    serial.updatesPerSecond = rate;
    serial.line.seed = instrument.seed;
    if (const QString text = serialOptions.read(parser, serial); !text.isEmpty())
        return complaint(text);
    if (serialOptions.isWanted(parser))
        result.serial = std::move(serial);
    return result;
}
