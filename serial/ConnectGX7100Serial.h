#pragma once

#include "ConnectGX7100.h"
#include "SerialTimings.h"

#include <QByteArray>

class TermSerialThread;

/// The link to an instrument on an RS-232 line.
///
/// To its tile it is a link like any other: instrument packets in, instrument packets out. It
/// translates them to and from the typed packets of the line and leaves the port to a worker, which
/// it has while it is connected. Files from the instrument arrive as "FXFR" packets, the course of
/// a transfer as fxstatus().
class ConnectGX7100Serial : public ConnectGX7100 {
    Q_OBJECT

public:
    explicit ConnectGX7100Serial(QWidget* parent, SerialTimings timings = {});
    /// Ends the worker; disconnected() is not emitted any more.
    ~ConnectGX7100Serial() override;

    using ConnectGX7100::Connect;
    /// Opens the port, given by its name or its device's path: connected() or disconnected(), at
    /// once. A link that has a worker keeps it and does nothing.
    void Connect(const QString& portName) override;
    void Disconnect() override;
    bool IsOpen() override;
    void Send(const std::string& bytes) override;

    /// Forgets files that the instrument has not asked for yet.
    void withdrawFiles();

    bool event(QEvent* event) override;

public slots:
    void slotTo(std::string packet) override;
    void stopXfer() override;

    /// Takes one packet of the serial line.
    void incomingLTermPacket(char type, std::string payload);
    /// Takes the end of a file transfer from the instrument.
    void FXMessage(int status, QByteArray data);
    /// Gives up the worker that has ended.
    void threadFinished();

private:
    void sendToBackChannel(std::string_view body);
    void emitPacket(std::string_view type, std::string_view body);
    void emitTextBundle();
    void emitGraphicsBundle();
    void emitBundle(std::string items);

    TermSerialThread* m_thread = nullptr;
    std::string m_text;
    std::string m_attributes;
    std::string m_graphics;
    std::string m_once;
    std::string m_cursor;
    const SerialTimings m_timings;
};
