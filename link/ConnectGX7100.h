#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <string>

/// The link to one instrument, whatever the medium: the tile talks to every kind through this.
///
/// Lives on the GUI thread and is owned by its tile. Emits connected() when the medium is open,
/// disconnected() exactly once for each end or failure of a connection, signalFrom() for each
/// instrument packet received, fxstatus() for the progress of a file transfer.
class ConnectGX7100 : public QObject {
    Q_OBJECT

public:
    /// `parent` is the widget that the link's message boxes belong to; not owned.
    explicit ConnectGX7100(QWidget* parent);

    /// Starts to connect to a numeric address; `interfaceIndex` scopes a link-local one. Never
    /// blocks. Links that are not over a network do nothing.
    virtual void Connect(std::string host, int interfaceIndex, int port);
    /// Starts to connect to a named serial port. Links that are not serial do nothing.
    virtual void Connect(const QString& portName);
    /// Reserved; no link does anything.
    virtual void Connect(const QString& first, const QString& second);
    /// Ends the connection or the attempt to make one.
    virtual void Disconnect() = 0;
    /// Whether what is sent now is handed to the medium.
    virtual bool IsOpen() = 0;

public slots:
    /// Sends one instrument packet.
    virtual void slotTo(std::string packet);
    /// Aborts a file transfer; only serial links have any.
    virtual void stopXfer();

public:
    /// Writes raw bytes to the medium; dropped silently when it is closed.
    virtual void Send(const std::string& bytes) = 0;

    /// The four bytes of `value`, most significant first.
    static std::string FourByteValue(unsigned int value);
    /// The inverse of FourByteValue.
    static unsigned int unsignedFromString(const std::string& bytes);
    /// `head`, the length of `data` in four bytes, `data`.
    static std::string Bundle(const std::string& head, const std::string& data);

    /// The complete packet for one key code: high byte the key group, low byte the key.
    static std::string sendKey(unsigned short code);
    /// The complete packet for a chat line, in the local 8-bit encoding.
    static std::string sendChat(const QString& text);
    /// The complete packet for input to the instrument's communication channel, in the local 8-bit
    /// encoding.
    static std::string sendCommIn(const QString& text);
    /// The complete packet for data to the instrument's back channel `id`.
    static std::string sendBackChannel(const std::string& id, const std::string& data);

signals:
    void connected();
    void disconnected();
    void signalFrom(std::string packet);
    void fxstatus(int status, int value);

protected:
    /// The parent of message boxes; null when it is gone.
    QWidget* parentWidget() const { return m_parentWidget; }

private:
    QPointer<QWidget> m_parentWidget;
};
