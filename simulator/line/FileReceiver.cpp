#include "FileReceiver.h"

#include "TCrc16.h"
#include "TransferBytes.h"

using namespace transferbytes;

FileReceiver::FileReceiver(const LineFaults& faults, const TransferTimings& timings,
                           Clock::time_point now)
    : FileTransfer(faults, timings), m_wrongReplies(faults.replyTimes) {
    if (!faults.neverAnswers)
        send(askForFile);
    waitUntil(now + timings.packet);
}

void FileReceiver::timeOut(Clock::time_point now) {
    // A request may be lost; a block is the program's to send.
    if (m_state == State::Enquiry && mayTryAgain()) {
        if (!faults().neverAnswers)
            send(askForFile);
        waitUntil(now + timings().packet);
        return;
    }
    end(Outcome::TimedOut);
}

void FileReceiver::receive(std::string_view bytes, Clock::time_point now) {
    for (const char byte : bytes) {
        if (outcome() || !receiveByte(byte, now))
            return;
    }
}

bool FileReceiver::receiveByte(char byte, Clock::time_point now) {
    switch (m_state) {
    case State::Enquiry:
    case State::BlockStart:
        // The program asks again when the answer was lost.
        if (byte == enquiry && m_expected == 1 && !faults().neverAnswers) {
            send(accept);
            m_state = State::BlockStart;
            waitUntil(now + timings().packet);
        } else if (byte == blockStart && m_state == State::BlockStart) {
            m_block.clear();
            m_state = State::Block;
            waitUntil(now + timings().packet);
        }
        return true;
    case State::Block:
        m_block += byte;
        waitUntil(now + timings().character);
        if (!blockIsComplete())
            return true;
        m_state = State::BlockStart;
        waitUntil(now + timings().packet);
        judgeBlock();
        return lengthIsSound();
    }
    return true;
}

int FileReceiver::blockNumber() const {
    return (static_cast<unsigned char>(m_block[0]) << 8) | static_cast<unsigned char>(m_block[1]);
}

std::size_t FileReceiver::blockLength() const {
    return (static_cast<std::size_t>(static_cast<unsigned char>(m_block[2])) << 8U) |
           static_cast<unsigned char>(m_block[3]);
}

bool FileReceiver::lengthIsSound() const {
    return blockLength() >= checksumSize && blockLength() <= maxData + checksumSize;
}

/// A length that no block has is not waited for.
bool FileReceiver::blockIsComplete() const {
    return m_block.size() >= headerSize &&
           (!lengthIsSound() || m_block.size() == headerSize + blockLength());
}

int FileReceiver::verdict() const {
    TCrc16 crc(0xFFFF);
    crc.Add(m_block);
    if (!lengthIsSound() || crc.Value() != 0)
        return checksumError;
    return blockNumber() == m_expected ? blockAccepted : outOfSequence;
}

void FileReceiver::judgeBlock() {
    int reply = verdict();
    if (m_expected == faults().abortAt)
        reply = receiverAborts;
    if (m_expected == faults().replyAt && m_wrongReplies > 0) {
        --m_wrongReplies;
        reply = faults().reply;
    }
    answer(reply);
}

void FileReceiver::answer(int reply) {
    send(reply);
    if (reply != blockAccepted) {
        blockComesAgain(reply, Outcome::Aborted);
    } else if (verdict() != blockAccepted) {
        end(Outcome::TooNoisy);
    } else if (blockLength() == checksumSize) {
        end(Outcome::Done);
    } else {
        m_file.append(m_block, headerSize, blockLength() - checksumSize);
        ++m_expected;
        blockIsDone();
    }
}
