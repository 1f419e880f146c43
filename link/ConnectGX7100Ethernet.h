#pragma once

#include "ConnectGX7100.h"
#include "MessageBuffer.h"

#include <QAbstractSocket>
#include <QTimer>

#include <chrono>
#include <deque>
#include <memory>
#include <string>

class QByteArray;
class QTcpSocket;

/// The link to an instrument on the network, over TCP.
///
/// Addresses that are asked for while an attempt is under way wait in a queue and are the further
/// tries of an attempt that fails; only the last failure is told to the operator, in a message box.
/// Every outcome arrives from the event loop, never from within Connect(). A connection, or a
/// series of attempts that failed, ends with exactly one disconnected(), which comes after the
/// message box if there is one. The link may be deleted, disconnected or connected anew in a slot
/// of any of its signals and while its message box is open.
class ConnectGX7100Ethernet : public ConnectGX7100 {
    Q_OBJECT

public:
    /// How long Disconnect() lets an instrument take the bytes that were sent before it.
    static constexpr std::chrono::milliseconds closingTime{2000};

    /// What is taken from the instrument in one turn of the event loop, at most. One that floods us
    /// fills its own send buffer, not our memory, and everybody else has their turn as well.
    static constexpr qint64 bytesPerTurn = qint64{64} << 10U;

    /// `parent` is the parent of the message boxes; `kind` and `model` say what the link leads to.
    ConnectGX7100Ethernet(QWidget* parent, std::string kind, std::string model,
                          std::chrono::milliseconds closing = closingTime);
    ~ConnectGX7100Ethernet() override;

    using ConnectGX7100::Connect;
    /// `host` is a numeric address; names are not looked up. `interfaceIndex` scopes it when it
    /// names an interface of this computer and is ignored otherwise.
    void Connect(std::string host, int interfaceIndex, int port) override;
    void Disconnect() override;
    /// Whether the socket is open: from the start of an attempt to the end of the connection.
    bool IsOpen() override;
    void Send(const std::string& bytes) override;

    /// Takes in bytes of the instrument's stream and emits the packets that they complete.
    virtual void incoming(QByteArray& chunk);
    virtual void OnSocketConnected();
    /// Closes the socket and emits disconnected().
    virtual void OnSocketDisconnected();

public slots:
    void OnSocketRead();
    /// Tries the next waiting address or tells the operator, as the error requires.
    void OnSocketError(QAbstractSocket::SocketError error);

private:
    struct _ConnectInfo {
        std::string host;
        int interfaceIndex = 0;
        int port = 0;
    };

    /// What the link is about, beside what the socket's own state says.
    enum class Phase {
        Ordinary,
        Failing,    ///< the socket has failed; the event loop will deal with it
        Telling,    ///< the failure is in a message box; disconnected() comes after it
        Closing,    ///< after Disconnect(): the last bytes are leaving
        Announcing, ///< disconnected() is being emitted and no attempt has begun since
    };

    void _TryConnect();
    void _Connect(const std::string& host, int interfaceIndex, int port);

    bool isBusy() const;
    bool isFailing() const;
    bool hasFurtherTry(QAbstractSocket::SocketError error) const;
    void socketFailed(QAbstractSocket::SocketError error);
    QString textFor(QAbstractSocket::SocketError error) const;
    void tellAndDisconnect(const QString& text);

    MessageBuffer m_messages;
    std::shared_ptr<QTcpSocket> m_socket;
    std::deque<_ConnectInfo> m_attempts;
    std::string m_kind;
    std::string m_model;
    /// Where the current attempt leads: host, "%" and interface index if it has one, ":", port.
    std::string m_description;

    Phase m_phase = Phase::Ordinary;
    QTimer m_failure;
    QAbstractSocket::SocketError m_error = QAbstractSocket::UnknownSocketError;
    QTimer m_closing;
};
