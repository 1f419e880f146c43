#include "Peer.h"

#include <QTest>

Peer::Peer(quint16 port, const QHostAddress& address) {
    m_socket.connectToHost(address, port);
}

QByteArray Peer::take(qsizetype size) {
    const bool enough = QTest::qWaitFor([this, size] { return rest().size() >= size; }, patience);
    if (!enough)
        qWarning("only %lld of %lld bytes came", static_cast<long long>(m_received.size()),
                 static_cast<long long>(size));
    QByteArray taken = m_received.first(std::min(size, m_received.size()));
    m_received.remove(0, taken.size());
    return taken;
}

void Peer::stopReading() {
    m_socket.setSocketOption(QAbstractSocket::ReceiveBufferSizeSocketOption, 64 * 1024);
    m_socket.setReadBufferSize(1);
}

bool Peer::waitForEnd() {
    return QTest::qWaitFor(
        [this] {
            rest();
            return m_socket.state() == QAbstractSocket::UnconnectedState;
        },
        patience);
}

QByteArray Peer::rest() {
    m_received += m_socket.readAll();
    return m_received;
}
