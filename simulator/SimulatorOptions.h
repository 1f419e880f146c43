#pragma once

#include "SerialSimulator.h"
#include "SimulatorServer.h"

#include <QCoreApplication>
#include <QHostAddress>
#include <QStringList>

#include <optional>
#include <variant>

/// What gx7100sim was asked to do.
struct SimulatorOptions {
    Q_DECLARE_TR_FUNCTIONS(SimulatorOptions)

public:
    /// The TCP port of a real instrument.
    static constexpr quint16 instrumentPort = 7100;

    QHostAddress address = QHostAddress(QHostAddress::Any);
    quint16 port = instrumentPort;
    /// Names to announce on the local network, all for the one port.
    QStringList announcements;
    SimulatorSettings simulator;
    /// The instrument on a serial line, if that is wanted instead.
    std::optional<SerialSimulatorSettings> serial;

    /// Text to print and leave: help or the version with exit code 0, a complaint with another.
    struct Message {
        QString text;
        int exitCode = 0;
    };

    /// Reads the program's arguments, the first being its own name.
    static std::variant<SimulatorOptions, Message> parse(const QStringList& arguments);
};
