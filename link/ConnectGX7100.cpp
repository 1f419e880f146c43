#include "ConnectGX7100.h"

#include "Packet.h"

#include <array>

namespace {

/// Text as it travels: the local 8-bit encoding, ending at a NUL if there is one.
std::string localText(const QString& text) {
    return std::string(packet::untilNul(text.toLocal8Bit().toStdString()));
}

} // namespace

ConnectGX7100::ConnectGX7100(QWidget* parent) : m_parentWidget(parent) {
    qRegisterMetaType<std::string>("std::string");
}

void ConnectGX7100::Connect(std::string /*host*/, int /*interfaceIndex*/, int /*port*/) {}

void ConnectGX7100::Connect(const QString& /*portName*/) {}

void ConnectGX7100::Connect(const QString& /*first*/, const QString& /*second*/) {}

void ConnectGX7100::slotTo(std::string packet) {
    Send(Bundle("<D>", packet));
}

void ConnectGX7100::stopXfer() {}

std::string ConnectGX7100::FourByteValue(unsigned int value) {
    return packet::fourByteValue(value);
}

unsigned int ConnectGX7100::unsignedFromString(const std::string& bytes) {
    return packet::unsignedFromBytes(bytes);
}

std::string ConnectGX7100::Bundle(const std::string& head, const std::string& data) {
    return packet::bundle(head, data);
}

std::string ConnectGX7100::sendKey(unsigned short code) {
    const std::array<char, 2> body{static_cast<char>(code >> 8U), static_cast<char>(code & 0xFFU)};
    return packet::build("KEYS", std::string_view(body.data(), body.size()));
}

std::string ConnectGX7100::sendChat(const QString& text) {
    return packet::build("CHAT", localText(text));
}

std::string ConnectGX7100::sendCommIn(const QString& text) {
    return packet::build("COMI", localText(text));
}

std::string ConnectGX7100::sendBackChannel(const std::string& id, const std::string& data) {
    return packet::build("FXTO", packet::untilNul("ID:" + id + "\n" + data));
}
