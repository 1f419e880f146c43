#include "SerialOptions.h"

#include <QFile>

namespace {
constexpr int fastestLine = 4000000;
} // namespace

SerialOptions::SerialOptions()
    : m_serial(QStringLiteral("serial"),
               tr("Instead of TCP, one instrument on a serial line: prints the port to connect to. "
                  "It takes files, and sends one when the operator's message is the word "
                  "\"send\".")),
      m_baud(QStringLiteral("baud"),
             tr("Speed of the serial line, at 11 bits a byte. 0 takes no time. Default: 57600."),
             tr("number"), QStringLiteral("57600")),
      m_lineFault(QStringLiteral("line-fault"),
                  tr("Way in which the serial line, or the instrument in a file transfer, "
                     "misbehaves; see below. Can be given several times."),
                  tr("name=value")),
      m_file(QStringLiteral("file"),
             tr("File that the instrument sends until it has received another. Default: a short "
                "text."),
             tr("path")) {}

QString SerialOptions::read(const QCommandLineParser& parser,
                            SerialSimulatorSettings& settings) const {
    bool sound = false;
    settings.line.baud = parser.value(m_baud).toInt(&sound);
    if (!sound || settings.line.baud < 0 || settings.line.baud > fastestLine)
        return tr("the speed must be a number from 0 to %1").arg(fastestLine);
    for (const QString& fault : parser.values(m_lineFault)) {
        if (!addLineFault(settings.line.faults, fault.toStdString()))
            return tr("\"%1\" is no fault of a line; see --help for those there are").arg(fault);
    }
    settings.file = "A file from the instrument.\n";
    if (!parser.isSet(m_file))
        return {};
    QFile file(parser.value(m_file));
    if (!file.open(QIODevice::ReadOnly))
        return tr("cannot read %1: %2").arg(file.fileName(), file.errorString());
    settings.file = file.readAll();
    return {};
}

QString SerialOptions::listOfFaults() {
    QString text;
    for (const LineFaultKind& kind : lineFaultKinds()) {
        QString wish = QString::fromUtf8(kind.name);
        if (*kind.value != '\0')
            wish += QLatin1Char('=') + QString::fromUtf8(kind.value);
        text += QStringLiteral("  %1  %2\n").arg(wish, -25).arg(tr(kind.description));
    }
    return text;
}
