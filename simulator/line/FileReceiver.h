#pragma once

#include "FileTransfer.h"

/// The instrument takes a file that the program has announced: it asks for it, accepts it and
/// answers every block.
class FileReceiver : public FileTransfer {
public:
    FileReceiver(const LineFaults& faults, const TransferTimings& timings, Clock::time_point now);

    void receive(std::string_view bytes, Clock::time_point now) override;

    /// What has arrived; the whole file once the outcome is Done.
    const std::string& file() const { return m_file; }

private:
    enum class State { Enquiry, BlockStart, Block };

    void timeOut(Clock::time_point now) override;
    /// False when what is left of the same packet is not worth reading.
    bool receiveByte(char byte, Clock::time_point now);
    bool lengthIsSound() const;
    bool blockIsComplete() const;
    void judgeBlock();
    void answer(int reply);
    int verdict() const;
    int blockNumber() const;
    std::size_t blockLength() const;

    State m_state = State::Enquiry;
    int m_expected = 1;
    int m_wrongReplies = 0;
    std::string m_block;
    std::string m_file;
};
