#include "InstrumentSession.h"

#include "Packet.h"

InstrumentSession::InstrumentSession(InstrumentSettings settings,
                                     std::unique_ptr<PacketTransport> transport, QObject* parent)
    : QObject(parent), m_instrument(std::move(settings)), m_transport(std::move(transport)) {
    connect(m_transport.get(), &PacketTransport::packetReceived, this, &InstrumentSession::receive);
    connect(m_transport.get(), &PacketTransport::drained, this, [this] {
        if (m_screenWaits)
            sendScreen();
    });
    connect(m_transport.get(), &PacketTransport::closed, this, &InstrumentSession::closed);
}

void InstrumentSession::tick(std::chrono::milliseconds elapsed) {
    if (m_instrument.tick(elapsed))
        sendScreen();
}

void InstrumentSession::sendChat(const QByteArray& text) {
    m_transport->send(packet::build("CHAT", text.toStdString()));
}

void InstrumentSession::receive(const std::string& packet) {
    emit packetReceived(QByteArray::fromStdString(packet));
    const Instrument::Response response = m_instrument.receive(packet);
    if (response.key) {
        m_keys.push_back(*response.key);
        if (m_keys.size() > rememberedKeys)
            m_keys.pop_front();
        emit keyReceived(*response.key);
    }
    for (const std::string& answer : response.packets)
        m_transport->send(answer);
    if (response.screenChanged)
        sendScreen();
}

void InstrumentSession::sendScreen() {
    m_screenWaits = m_transport->backlog() > m_transport->updateLimit();
    if (!m_screenWaits)
        m_transport->send(m_instrument.updatePacket());
}
