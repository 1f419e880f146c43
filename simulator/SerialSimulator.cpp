#include "SerialSimulator.h"

#include "Packet.h"

#include <algorithm>
#include <cmath>

SerialSimulator::SerialSimulator(SerialSimulatorSettings settings, QObject* parent)
    : QObject(parent), m_file(std::move(settings.file)) {
    if (settings.instrument.name.empty())
        settings.instrument.name = "Unit 1";
    auto transport = std::make_unique<SerialTransport>(&m_port, settings.line);
    m_transport = transport.get();
    m_session =
        std::make_unique<InstrumentSession>(std::move(settings.instrument), std::move(transport));
    connect(m_session.get(), &InstrumentSession::packetReceived, this, &SerialSimulator::receive);
    connect(m_transport, &SerialTransport::transferEnded, this, &SerialSimulator::transferEnded);
    connect(m_transport, &SerialTransport::fileReceived, this, [this](const QByteArray& file) {
        m_file = file;
        emit fileReceived(file);
    });
    connect(&m_port, &PtyPort::closed, this, &SerialSimulator::disconnected);
    connect(&m_port, &PtyPort::opened, this, [this] {
        emit connected();
        m_session->sendScreen();
    });
    if (settings.updatesPerSecond > 0) {
        constexpr double millisecondsPerSecond = 1000;
        const std::chrono::milliseconds period(
            std::max(std::lround(millisecondsPerSecond / settings.updatesPerSecond), 1L));
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, [this, period] { m_session->tick(period); });
        m_timer.start(period);
    }
}

bool SerialSimulator::start() {
    return m_port.create();
}

void SerialSimulator::receive(const QByteArray& packet) {
    const std::string bytes = packet.toStdString();
    const auto view = packet::parse(bytes);
    if (view && view->type == "CHAT" && view->body == "send")
        sendFile(m_file);
}
