#pragma once

#include "SerialSimulator.h"

#include <QCommandLineOption>
#include <QCommandLineParser>
#include <QCoreApplication>

/// The arguments of gx7100sim that are about a serial line.
class SerialOptions {
    Q_DECLARE_TR_FUNCTIONS(SerialOptions)

public:
    SerialOptions();

    QList<QCommandLineOption> all() const { return {m_serial, m_baud, m_lineFault, m_file}; }

    /// Whether a serial line is wanted at all.
    bool isWanted(const QCommandLineParser& parser) const { return parser.isSet(m_serial); }

    /// Reads the line's settings; a complaint, or nothing when all is well.
    QString read(const QCommandLineParser& parser, SerialSimulatorSettings& settings) const;

    /// The faults of a line, for the help text.
    static QString listOfFaults();

private:
    QCommandLineOption m_serial;
    QCommandLineOption m_baud;
    QCommandLineOption m_lineFault;
    QCommandLineOption m_file;
};
