#include "ConnectGX7100Serial.h"

#include "Packet.h"
#include "SerialPacket.h"
#include "TermSerialThread.h"

#include <QEvent>

#include <utility>

namespace {

/// The line in front of a file in the body of a packet to the back channel.
constexpr std::string_view fileMark = "CATCH\n";
/// The latest place in the body at which it is taken for that.
constexpr std::size_t lastFileMark = 9;

} // namespace

ConnectGX7100Serial::ConnectGX7100Serial(QWidget* parent, SerialTimings timings)
    : ConnectGX7100(parent), m_timings(timings) {}

ConnectGX7100Serial::~ConnectGX7100Serial() {
    // Forgotten first: this object hears of its children's end.
    delete std::exchange(m_thread, nullptr);
}

void ConnectGX7100Serial::Connect(const QString& portName) {
    if (m_thread)
        return;
    m_thread = new TermSerialThread(portName, this, m_timings);
    if (!m_thread->IsOpen()) {
        m_thread->deleteLater();
        m_thread = nullptr;
        emit disconnected();
        return;
    }
    connect(m_thread, &TermSerialThread::signalFromSerial, this,
            &ConnectGX7100Serial::incomingLTermPacket);
    connect(m_thread, &TermSerialThread::finished, this, &ConnectGX7100Serial::threadFinished);
    connect(m_thread, &TermSerialThread::FxMessage, this, &ConnectGX7100Serial::FXMessage);
    connect(m_thread, &TermSerialThread::xferProgress, this, &ConnectGX7100Serial::fxstatus);
    m_thread->start(QThread::InheritPriority);
    // Last, so that whoever hears it may do anything, deleting this link included.
    emit connected();
}

void ConnectGX7100Serial::Disconnect() {
    if (m_thread)
        m_thread->shutDown();
}

bool ConnectGX7100Serial::IsOpen() {
    return m_thread && m_thread->IsOpen();
}

void ConnectGX7100Serial::Send(const std::string& bytes) {
    if (m_thread)
        m_thread->external_send(bytes);
}

void ConnectGX7100Serial::withdrawFiles() {
    if (m_thread)
        m_thread->withdrawFiles();
}

void ConnectGX7100Serial::stopXfer() {
    if (m_thread)
        m_thread->stopXfer(serialpacket::build('Y', "L"));
}

void ConnectGX7100Serial::slotTo(std::string packet) {
    const std::optional<packet::View> view = packet::parse(packet);
    if (!view)
        return;
    if (view->type == "KEYS")
        Send(serialpacket::buildAll('K', view->body));
    else if (view->type == "COMI")
        Send(serialpacket::buildAll('C', view->body));
    else if (view->type == "CHAT")
        Send(serialpacket::buildAll('M', view->body));
    else if (view->type == "FXTO")
        sendToBackChannel(view->body);
}

void ConnectGX7100Serial::sendToBackChannel(std::string_view body) {
    const std::size_t mark = body.find(fileMark);
    if (mark > lastFileMark) {
        Send(serialpacket::buildAll('Y', body));
        return;
    }
    const std::size_t fileBegin = mark + fileMark.size();
    // The file first: a quick instrument asks for it before this function returns.
    if (m_thread)
        m_thread->addPacket(std::string(body.substr(fileBegin)));
    Send(serialpacket::build('Y', body.substr(0, fileBegin)));
}

bool ConnectGX7100Serial::event(QEvent* event) {
    if (m_thread && event->type() == QEvent::MetaCall)
        m_thread->awaitHandover();
    return ConnectGX7100::event(event);
}

void ConnectGX7100Serial::incomingLTermPacket(char type, std::string payload) {
    switch (type) {
    case 'G':
        m_graphics = std::move(payload);
        emitGraphicsBundle();
        break;
    case 'R':
        m_cursor = std::move(payload);
        emitTextBundle();
        break;
    case 'T':
        m_text = std::move(payload);
        break;
    case 'A':
        m_attributes = std::move(payload);
        break;
    case 'C':
        m_once = std::move(payload);
        break;
    case 'M':
        emitPacket("CHAT", payload);
        break;
    case 'S':
        emitPacket("SOFT", payload);
        break;
    case 'V':
        emitPacket("VARS", payload);
        break;
    case 'X':
        emitPacket("FXFR", payload);
        break;
    default:
        break;
    }
}

void ConnectGX7100Serial::FXMessage(int status, QByteArray data) {
    if (status == 0)
        emitPacket("FXFR", std::string_view(data.data(), static_cast<std::size_t>(data.size())));
}

void ConnectGX7100Serial::threadFinished() {
    if (!m_thread)
        return;
    m_thread->deleteLater();
    m_thread = nullptr;
    emit disconnected();
}

void ConnectGX7100Serial::emitPacket(std::string_view type, std::string_view body) {
    emit signalFrom(packet::build(type, body));
}

void ConnectGX7100Serial::emitTextBundle() {
    emitBundle(Bundle("T", m_text) + Bundle("A", m_attributes) + Bundle("R", m_cursor));
}

void ConnectGX7100Serial::emitGraphicsBundle() {
    emitBundle(Bundle("G", m_graphics));
}

void ConnectGX7100Serial::emitBundle(std::string items) {
    if (!m_once.empty())
        items += Bundle("C", m_once);
    m_once.clear();
    emitPacket("BNDL", items);
}
