#pragma once

#include "FileTransfer.h"

/// The instrument sends a file: it offers it, waits to be accepted and sends it in blocks, each
/// until it is accepted.
class FileSender : public FileTransfer {
public:
    FileSender(std::string file, const LineFaults& faults, const TransferTimings& timings,
               Clock::time_point now);

    void receive(std::string_view bytes, Clock::time_point now) override;

private:
    void timeOut(Clock::time_point now) override;
    void receiveReply(int reply, Clock::time_point now);
    void sendNextBlock(Clock::time_point now);
    void sendBlock(Clock::time_point now);

    std::string m_file;
    bool m_accepted = false;
    int m_number = 1;
    std::size_t m_position = 0;
};
