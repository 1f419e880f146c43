#pragma once

#include "Instrument.h"
#include "PacketTransport.h"

#include <QByteArray>

#include <deque>
#include <memory>

/// One instrument at one end of a wire: feeds its instrument with the packets that arrive and
/// sends what it answers. Screen updates that the peer does not take in time are skipped, and the
/// latest follows as soon as it does.
class InstrumentSession : public QObject {
    Q_OBJECT

public:
    /// Key codes that are remembered.
    static constexpr std::size_t rememberedKeys = 4096;

    InstrumentSession(InstrumentSettings settings, std::unique_ptr<PacketTransport> transport,
                      QObject* parent = nullptr);

    /// Sends the screen as it is now, or the then latest as soon as the peer takes it.
    void sendScreen();

    /// Lets time go by, and sends the screen if it has changed of itself.
    void tick(std::chrono::milliseconds elapsed);

    /// The person at the instrument says something to the operator.
    void sendChat(const QByteArray& text);

    void close() { m_transport->close(); }

    const Instrument& instrument() const { return m_instrument; }
    const PacketTransport& transport() const { return *m_transport; }
    /// The key codes received so far, the latest last.
    const std::deque<quint16>& keys() const { return m_keys; }

signals:
    void keyReceived(quint16 code);
    /// Any packet, before the instrument has answered it.
    void packetReceived(const QByteArray& packet);
    /// The wire is gone; the session is of no more use.
    void closed();

private:
    void receive(const std::string& packet);

    Instrument m_instrument;
    std::unique_ptr<PacketTransport> m_transport;
    std::deque<quint16> m_keys;
    bool m_screenWaits = false;
};
