#include "SerialTransport.h"

#include "FileReceiver.h"
#include "FileSender.h"
#include "TypedPackets.h"

#include <algorithm>
#include <utility>

namespace {

/// What the program says on the back channel when it has a file for the instrument.
constexpr std::string_view fileAnnouncement = "ID:CATCH\n";
/// What it says to stop a transfer.
constexpr std::string_view stopRequest = "L";

constexpr char transferLetter = 'X';
constexpr char backChannelLetter = 'Y';

} // namespace

SerialTransport::SerialTransport(PtyPort* port, const SerialLineSettings& settings, QObject* parent)
    : PacketTransport(parent), m_port(port), m_settings(settings), m_toProgram(m_settings.baud),
      m_toInstrument(m_settings.baud), m_noiseToProgram(m_settings.faults, m_settings.seed),
      m_noiseToInstrument(m_settings.faults, m_settings.seed + 1) {
    m_timer.setSingleShot(true);
    m_timer.setTimerType(Qt::PreciseTimer);
    connect(&m_timer, &QTimer::timeout, this, &SerialTransport::serve);
    connect(m_port, &PtyPort::received, this, &SerialTransport::takeFromLine);
    connect(m_port, &PtyPort::drained, this, &SerialTransport::serve);
    connect(m_port, &PtyPort::opened, this, &SerialTransport::begin);
}

SerialTransport::~SerialTransport() = default;

/// A program has opened the port: what was on the line before is not for it.
void SerialTransport::begin() {
    m_toProgram.clear();
    m_toInstrument.clear();
    m_reader.reset();
    m_readerDeadline.reset();
    if (m_transfer)
        m_transfer->stop();
    m_announcedFiles = 0;
    serve();
}

void SerialTransport::send(const std::string& packet) {
    if (!m_closed)
        giveToLine(typedpackets::fromPacket(packet));
}

qint64 SerialTransport::backlog() const {
    return static_cast<qint64>(m_toProgram.size()) + m_port->backlog() + (m_transfer ? 1 : 0);
}

void SerialTransport::close() {
    if (!std::exchange(m_closed, true))
        emit closed();
}

QString SerialTransport::peerText() const {
    return m_port->name();
}

void SerialTransport::sendFile(const QByteArray& file) {
    m_fileToSend = file.toStdString();
    serve();
}

void SerialTransport::takeFromLine(const QByteArray& bytes) {
    m_toInstrument.push(std::string_view(bytes.data(), static_cast<std::size_t>(bytes.size())),
                        Clock::now());
    serve();
}

void SerialTransport::giveToLine(const std::string& bytes) {
    if (!m_port->isOpen())
        return;
    m_toProgram.push(bytes, Clock::now());
    serve();
}

bool SerialTransport::isTransferWaiting() const {
    return !m_transfer && m_port->isOpen() && (m_announcedFiles > 0 || m_fileToSend);
}

/// Does what is due. What that leads to may lead here again, and then is done in the same run.
void SerialTransport::serve() {
    if (m_serving || m_closed)
        return;
    m_serving = true;
    Clock::time_point now = Clock::now();
    do {
        serveOnce(now);
        now = Clock::now();
    } while (nextDeadline().value_or(Clock::time_point::max()) <= now);
    m_serving = false;
    schedule(now);
}

void SerialTransport::serveOnce(Clock::time_point now) {
    const std::string arrived = m_noiseToInstrument.pass(m_toInstrument.pop(now));
    m_toInstrument.stall(m_noiseToInstrument.takeStall());
    if (!arrived.empty()) {
        m_reader.add(arrived);
        m_readerDeadline = now + m_settings.timings.character;
    }
    while (const auto packet = m_reader.next())
        handle(*packet, now);
    // A packet that has lost its end would swallow all that follows.
    if (m_readerDeadline && now >= *m_readerDeadline)
        m_reader.reset();
    if (!m_reader.isInside())
        m_readerDeadline.reset();
    serveTransfer(now);

    const bool waited = m_toProgram.size() > 0;
    m_port->write(m_noiseToProgram.pass(m_toProgram.pop(now)));
    m_toProgram.stall(m_noiseToProgram.takeStall());
    if (waited && backlog() == 0)
        emit drained();
}

void SerialTransport::handle(const TypedPacketReader::TypedPacket& packet, Clock::time_point now) {
    if (packet.type == transferLetter) {
        if (m_transfer)
            m_transfer->receive(packet.payload, now);
        return;
    }
    if (packet.type == backChannelLetter)
        handleBackChannel(packet.payload);
    if (const auto instrumentPacket = typedpackets::toPacket(packet.type, packet.payload))
        emit packetReceived(*instrumentPacket);
}

void SerialTransport::handleBackChannel(const std::string& payload) {
    if (payload == fileAnnouncement) {
        ++m_announcedFiles;
    } else if (payload == stopRequest) {
        m_announcedFiles = 0;
        if (m_transfer)
            m_transfer->stop();
    }
}

void SerialTransport::serveTransfer(Clock::time_point now) {
    startWaitingTransfer(now);
    if (!m_transfer)
        return;
    m_transfer->advance(now);
    const std::string bytes = m_transfer->takeOutput();
    if (!bytes.empty() && m_port->isOpen())
        m_toProgram.push(typedpackets::build(transferLetter, bytes), now);
    if (m_transfer->outcome())
        endTransfer();
}

void SerialTransport::startWaitingTransfer(Clock::time_point now) {
    if (!isTransferWaiting())
        return;
    if (m_announcedFiles > 0) {
        --m_announcedFiles;
        m_transfer = std::make_unique<FileReceiver>(m_settings.faults, m_settings.timings, now);
    } else {
        m_transfer = std::make_unique<FileSender>(std::move(*m_fileToSend), m_settings.faults,
                                                  m_settings.timings, now);
        m_fileToSend.reset();
    }
}

void SerialTransport::endTransfer() {
    const std::unique_ptr<FileTransfer> ended = std::exchange(m_transfer, nullptr);
    const auto* const receiver = dynamic_cast<const FileReceiver*>(ended.get());
    if (receiver && ended->outcome() == FileTransfer::Outcome::Done)
        emit fileReceived(QByteArray::fromStdString(receiver->file()));
    emit transferEnded(*ended->outcome());
    if (backlog() == 0)
        emit drained();
}

std::optional<SerialTransport::Clock::time_point> SerialTransport::nextDeadline() const {
    // What had to wait for another transfer is due when that has ended.
    if (isTransferWaiting())
        return Clock::time_point();
    std::optional<Clock::time_point> earliest;
    const auto consider = [&earliest](const std::optional<Clock::time_point>& deadline) {
        if (deadline && (!earliest || *deadline < *earliest))
            earliest = deadline;
    };
    consider(m_toProgram.nextDue());
    consider(m_toInstrument.nextDue());
    consider(m_readerDeadline);
    if (m_transfer)
        consider(m_transfer->deadline());
    return earliest;
}

void SerialTransport::schedule(Clock::time_point now) {
    const auto deadline = nextDeadline();
    if (!deadline) {
        m_timer.stop();
        return;
    }
    m_timer.start(std::chrono::ceil<std::chrono::milliseconds>(
        std::max(*deadline - now, Clock::duration::zero())));
}
