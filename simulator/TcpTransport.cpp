#include "TcpTransport.h"

#include <array>
#include <utility>

#ifdef Q_OS_WIN
#include <winsock2.h>
#else
#include <sys/socket.h>
#endif

namespace {

/// Bytes taken from the socket at a time.
constexpr qint64 readChunk = 4096;
/// Bytes that Qt may hold unread for us.
constexpr qint64 readBuffer = qint64{64} * 1024;
/// With more than this unsent, nothing more is read: answers must not pile up.
constexpr qint64 longestBacklog = qint64{256} * 1024;

QString textOf(const QHostAddress& address, quint16 port) {
    // An IPv4 peer of a socket for both protocols has a mapped address that nobody would type.
    bool isIpv4 = false;
    const QHostAddress plain(address.toIPv4Address(&isIpv4));
    const QString host = isIpv4 ? plain.toString() : QStringLiteral("[%1]").arg(address.toString());
    return QStringLiteral("%1:%2").arg(host).arg(port);
}

} // namespace

TcpTransport::TcpTransport(QTcpSocket* socket, FaultChain faults, QObject* parent)
    : PacketTransport(parent), m_socket(socket), m_faults(std::move(faults)),
      m_peerText(textOf(socket->peerAddress(), socket->peerPort())) {
    m_socket->setParent(this);
    m_socket->setReadBufferSize(readBuffer);
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    connect(m_socket, &QTcpSocket::readyRead, this, &TcpTransport::readAvailable);
    connect(m_socket, &QTcpSocket::disconnected, this, &TcpTransport::reportClosed);
    // Queued: the socket tells this in the middle of a write, where nothing else may be sent.
    connect(
        m_socket, &QTcpSocket::bytesWritten, this,
        [this] {
            emit drained();
            readAvailable();
        },
        Qt::QueuedConnection);
}

QString TcpTransport::peerText() const {
    return m_peerText;
}

void TcpTransport::send(const std::string& packet) {
    if (m_silent || m_closed)
        return;
    const Delivery delivery = m_faults.deliver(packet);
    for (const std::string& write : delivery.writes) {
        m_socket->write(write.data(), static_cast<qint64>(write.size()));
        m_socket->flush();
    }
    m_silent = delivery.ending != Delivery::Ending::CarryOn;
    if (delivery.ending == Delivery::Ending::Reset)
        reset();
}

void TcpTransport::readAvailable() {
    std::array<char, readChunk> chunk{};
    while (!m_closed && backlog() <= longestBacklog) {
        const qint64 count = m_socket->read(chunk.data(), readChunk);
        if (count <= 0)
            break;
        m_reader.add(std::string_view(chunk.data(), static_cast<std::size_t>(count)));
        while (const auto packet = m_reader.nextPacket())
            emit packetReceived(*packet);
        if (m_reader.hasRefused())
            close();
    }
}

void TcpTransport::close() {
    m_socket->abort();
    reportClosed();
}

void TcpTransport::reset() {
    // Closing without lingering makes the system send a reset instead of an orderly end.
#ifdef Q_OS_WIN
    const auto handle = static_cast<SOCKET>(m_socket->socketDescriptor());
#else
    const auto handle = static_cast<int>(m_socket->socketDescriptor());
#endif
    linger none{};
    none.l_onoff = 1;
    none.l_linger = 0;
    setsockopt(handle, SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&none), sizeof(none));
    close();
}

void TcpTransport::reportClosed() {
    if (!std::exchange(m_closed, true))
        emit closed();
}
