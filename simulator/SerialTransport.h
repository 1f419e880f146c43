#pragma once

#include "FileTransfer.h"
#include "LineNoise.h"
#include "PacedQueue.h"
#include "PacketTransport.h"
#include "PtyPort.h"
#include "TransferTimings.h"
#include "TypedPacketReader.h"

#include <QByteArray>
#include <QTimer>

#include <memory>
#include <optional>

/// What a simulated serial line is like.
struct SerialLineSettings {
    int baud = 57600; ///< bits a second; 0 for a line that takes no time
    LineFaults faults;
    std::uint32_t seed = 1; ///< the same seed gives the same noise
    TransferTimings timings;
};

/// Packets over a serial port, and the instrument's side of file transfers.
///
/// A file that the program announces is asked for and taken; sendFile() offers one. One transfer
/// runs at a time, and while it runs screen updates wait.
class SerialTransport : public PacketTransport {
    Q_OBJECT

public:
    /// `port` is not owned and must outlive the transport.
    SerialTransport(PtyPort* port, const SerialLineSettings& settings, QObject* parent = nullptr);
    ~SerialTransport() override;

    void send(const std::string& packet) override;
    qint64 backlog() const override;
    qint64 updateLimit() const override { return 0; }
    void close() override;
    QString peerText() const override;

    /// Offers a file to the program as soon as no other transfer runs; of several that wait the
    /// last one only.
    void sendFile(const QByteArray& file);

    /// Whether a file is on its way, in either direction.
    bool isTransferring() const { return m_transfer != nullptr; }

signals:
    /// A whole file has arrived.
    void fileReceived(const QByteArray& file);
    /// A transfer, in either direction, has ended.
    void transferEnded(FileTransfer::Outcome outcome);

private:
    using Clock = PacedQueue::Clock;

    void begin();
    void serve();
    void serveOnce(Clock::time_point now);
    void schedule(Clock::time_point now);
    void takeFromLine(const QByteArray& bytes);
    void giveToLine(const std::string& bytes);
    void handle(const TypedPacketReader::TypedPacket& packet, Clock::time_point now);
    void handleBackChannel(const std::string& payload);
    void serveTransfer(Clock::time_point now);
    bool isTransferWaiting() const;
    void startWaitingTransfer(Clock::time_point now);
    void endTransfer();
    std::optional<Clock::time_point> nextDeadline() const;

    PtyPort* m_port;
    SerialLineSettings m_settings;
    PacedQueue m_toProgram;
    PacedQueue m_toInstrument;
    LineNoise m_noiseToProgram;
    LineNoise m_noiseToInstrument;
    TypedPacketReader m_reader;
    std::optional<Clock::time_point> m_readerDeadline;
    std::unique_ptr<FileTransfer> m_transfer;
    int m_announcedFiles = 0;
    std::optional<std::string> m_fileToSend;
    QTimer m_timer;
    bool m_serving = false;
    bool m_closed = false;
};
