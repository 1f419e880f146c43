#include "ConnectGX7100Ethernet.h"

#include <QByteArray>
#include <QDataStream>
#include <QHostAddress>
#include <QMessageBox>
#include <QNetworkInterface>
#include <QNetworkProxy>
#include <QPointer>
#include <QSignalBlocker>
#include <QTcpSocket>

#include <algorithm>
#include <utility>

namespace {

/// What is handed to the stream at once; its lengths are ints.
constexpr std::size_t writeSliceSize = 1U << 20U;

} // namespace

// A slot of one of our signals may delete the link while the socket's own code is on the stack. The
// functions that the socket calls therefore hold it, and whoever lets go of it last does so by way
// of the event loop.
ConnectGX7100Ethernet::ConnectGX7100Ethernet(QWidget* parent, std::string kind, std::string model,
                                             std::chrono::milliseconds closing)
    : ConnectGX7100(parent),
      m_socket(new QTcpSocket(this), [](QTcpSocket* socket) { socket->deleteLater(); }),
      m_kind(std::move(kind)), m_model(std::move(model)) {
    m_socket->setReadBufferSize(bytesPerTurn);
    // Instruments are on the operator's own network; the proxy for the web does not know them.
    m_socket->setProxy(QNetworkProxy::NoProxy);
    connect(m_socket.get(), &QTcpSocket::readyRead, this, &ConnectGX7100Ethernet::OnSocketRead);
    connect(m_socket.get(), &QTcpSocket::errorOccurred, this, &ConnectGX7100Ethernet::socketFailed);
    connect(m_socket.get(), &QTcpSocket::connected, this,
            &ConnectGX7100Ethernet::OnSocketConnected);
    connect(m_socket.get(), &QTcpSocket::disconnected, this,
            &ConnectGX7100Ethernet::OnSocketDisconnected);

    m_failure.setSingleShot(true);
    m_failure.setInterval(0);
    connect(&m_failure, &QTimer::timeout, this, [this] {
        m_phase = Phase::Ordinary;
        OnSocketError(m_error);
    });
    m_closing.setSingleShot(true);
    m_closing.setInterval(closing);
    connect(&m_closing, &QTimer::timeout, this, &ConnectGX7100Ethernet::OnSocketDisconnected);
}

ConnectGX7100Ethernet::~ConnectGX7100Ethernet() {
    m_socket->disconnect(this);
    if (m_socket.use_count() > 1) {
        m_socket->abort();
        m_socket->setParent(nullptr);
    }
}

void ConnectGX7100Ethernet::Connect(std::string host, int interfaceIndex, int port) {
    m_attempts.push_back({std::move(host), interfaceIndex, port});
    _TryConnect();
}

bool ConnectGX7100Ethernet::isBusy() const {
    return isFailing() || m_socket->state() != QAbstractSocket::UnconnectedState;
}

void ConnectGX7100Ethernet::_TryConnect() {
    if (isBusy() || m_attempts.empty())
        return;
    const _ConnectInfo attempt = std::move(m_attempts.front());
    m_attempts.pop_front();
    _Connect(attempt.host, attempt.interfaceIndex, attempt.port);
}

void ConnectGX7100Ethernet::_Connect(const std::string& host, int interfaceIndex, int port) {
    m_phase = Phase::Ordinary;
    m_description = host;
    QHostAddress address(QString::fromStdString(host));
    const QNetworkInterface scope = QNetworkInterface::interfaceFromIndex(interfaceIndex);
    if (scope.isValid()) {
        address.setScopeId(scope.name());
        m_description += '%' + std::to_string(interfaceIndex);
    }
    m_description += ':' + std::to_string(port);
    m_socket->connectToHost(address, static_cast<quint16>(port), QIODevice::ReadWrite);
}

void ConnectGX7100Ethernet::Disconnect() {
    m_attempts.clear();
    m_description.clear();
    m_failure.stop();
    if (isFailing())
        m_phase = Phase::Ordinary;
    if (m_socket->state() == QAbstractSocket::ConnectedState) {
        const QSignalBlocker quiet(m_socket.get());
        m_socket->disconnectFromHost();
        if (m_socket->state() == QAbstractSocket::ClosingState) {
            m_phase = Phase::Closing;
            m_closing.start();
        }
    }
    // Bytes are still on their way out; or this is a slot of the very disconnected() asked for.
    if (m_phase == Phase::Closing || m_phase == Phase::Announcing)
        return;
    OnSocketDisconnected();
}

bool ConnectGX7100Ethernet::IsOpen() {
    return m_socket->isOpen();
}

void ConnectGX7100Ethernet::Send(const std::string& bytes) {
    if (!m_socket->isOpen())
        return;
    QDataStream stream(m_socket.get());
    for (std::size_t sent = 0; sent < bytes.size(); sent += writeSliceSize) {
        const std::size_t slice = std::min(writeSliceSize, bytes.size() - sent);
        stream.writeRawData(bytes.data() + sent, static_cast<int>(slice));
    }
}

void ConnectGX7100Ethernet::OnSocketRead() {
    const std::shared_ptr<QTcpSocket> held = m_socket;
    const QPointer<ConnectGX7100Ethernet> alive(this);
    // Not once: the socket is silent about what arrives while a slot runs an event loop of its own.
    while (alive && held->isOpen() && held->bytesAvailable() > 0) {
        QByteArray chunk = held->readAll();
        incoming(chunk);
    }
}

void ConnectGX7100Ethernet::incoming(QByteArray& chunk) {
    m_messages.Add(chunk.constData(), static_cast<unsigned int>(chunk.size()));
    const QPointer<ConnectGX7100Ethernet> alive(this);
    std::string tag;
    std::string payload;
    while (alive && m_messages.NextMessage(tag, payload)) {
        if (tag == "D")
            emit signalFrom(std::move(payload));
        payload.clear();
    }
}

void ConnectGX7100Ethernet::OnSocketConnected() {
    const std::shared_ptr<QTcpSocket> held = m_socket;
    // A key press is 17 bytes that must not wait for company.
    m_socket->setSocketOption(QAbstractSocket::LowDelayOption, 1);
    emit connected();
}

void ConnectGX7100Ethernet::OnSocketDisconnected() {
    if (isFailing())
        return;
    const std::shared_ptr<QTcpSocket> held = m_socket;
    const QPointer<ConnectGX7100Ethernet> alive(this);
    const bool wasAskedFor = m_phase == Phase::Closing;
    m_closing.stop();
    // The next connection starts with a frame, and what this one still holds is for nobody.
    m_messages = MessageBuffer();
    {
        const QSignalBlocker quiet(m_socket.get());
        m_socket->abort();
        m_socket->close();
    }
    m_phase = Phase::Announcing;
    emit disconnected();
    if (!alive)
        return;
    if (m_phase == Phase::Announcing)
        m_phase = Phase::Ordinary;
    // What waits was asked for after Disconnect(); after a loss it is left over and stays.
    if (wasAskedFor)
        _TryConnect();
}

/// Hears the socket at once and has the error dealt with from the event loop: a first attempt may
/// fail before Connect() has returned, the socket cannot be used again from within its signal, and
/// a message box must not run on top of it.
void ConnectGX7100Ethernet::socketFailed(QAbstractSocket::SocketError error) {
    const bool toldBySocket = error == QAbstractSocket::RemoteHostClosedError;
    if (toldBySocket || m_phase == Phase::Closing || isFailing())
        return;
    const bool wasConnected = m_socket->state() != QAbstractSocket::UnconnectedState;
    if (wasConnected && hasFurtherTry(error))
        return;
    m_phase = Phase::Failing;
    m_error = error;
    m_failure.start();
}

bool ConnectGX7100Ethernet::isFailing() const {
    return m_phase == Phase::Failing || m_phase == Phase::Telling;
}

bool ConnectGX7100Ethernet::hasFurtherTry(QAbstractSocket::SocketError error) const {
    return !m_attempts.empty() &&
           (error == QAbstractSocket::ConnectionRefusedError ||
            error == QAbstractSocket::HostNotFoundError || error == QAbstractSocket::NetworkError);
}

void ConnectGX7100Ethernet::OnSocketError(QAbstractSocket::SocketError error) {
    if (error == QAbstractSocket::RemoteHostClosedError)
        return;
    if (hasFurtherTry(error))
        _TryConnect();
    else
        tellAndDisconnect(textFor(error));
}

QString ConnectGX7100Ethernet::textFor(QAbstractSocket::SocketError error) const {
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
        return tr("The connection was refused by the peer. Make sure the GX-7100 is running, and "
                  "check that the host name and port settings are correct.");
    case QAbstractSocket::HostNotFoundError:
        return tr("The host was not found. Please check the host name and port settings.");
    case QAbstractSocket::NetworkError:
        return tr("Network error while trying to connect to:") +
               QString::fromStdString(m_description);
    default:
        return tr("The following error occurred: %1. (%2)")
            .arg(m_socket->errorString(), QString::number(error));
    }
}

void ConnectGX7100Ethernet::tellAndDisconnect(const QString& text) {
    if (m_phase == Phase::Telling)
        return;
    // What waits by now has failed too; what is asked for while the box is open has not.
    m_attempts.clear();
    m_phase = Phase::Telling;
    const QPointer<ConnectGX7100Ethernet> alive(this);
    // On the heap: it goes when its parent goes, and that may be while it is open.
    const QPointer<QMessageBox> box = new QMessageBox(
        QMessageBox::Information, tr("Connect GX-7100"), text, QMessageBox::Ok, parentWidget());
    box->setTextFormat(Qt::PlainText);
    connect(this, &QObject::destroyed, box.data(), &QMessageBox::reject);
    box->exec();
    delete box;
    if (!alive)
        return;
    // Unless Disconnect() was called meanwhile, which has announced the end already.
    if (m_phase == Phase::Telling) {
        m_phase = Phase::Ordinary;
        m_description.clear();
        OnSocketDisconnected();
    }
    if (alive)
        _TryConnect();
}
