#include "FileSender.h"

#include "TCrc16.h"
#include "TransferBytes.h"

#include <algorithm>
#include <utility>

using namespace transferbytes;

FileSender::FileSender(std::string file, const LineFaults& faults, const TransferTimings& timings,
                       Clock::time_point now)
    : FileTransfer(faults, timings), m_file(std::move(file)) {
    send(offerFile);
    if (!faults.neverAnswers)
        send(enquiry);
    waitUntil(now + timings.character);
}

void FileSender::timeOut(Clock::time_point now) {
    if (m_accepted || !mayTryAgain()) {
        end(Outcome::TimedOut);
        return;
    }
    if (!faults().neverAnswers)
        send(enquiry);
    waitUntil(now + timings().character);
}

void FileSender::receive(std::string_view bytes, Clock::time_point now) {
    for (const char byte : bytes) {
        if (outcome())
            return;
        if (m_accepted) {
            receiveReply(static_cast<unsigned char>(byte), now);
        } else if (byte == accept) {
            m_accepted = true;
            sendBlock(now);
        }
    }
}

void FileSender::receiveReply(int reply, Clock::time_point now) {
    if (reply == blockAccepted)
        sendNextBlock(now);
    else if (blockComesAgain(reply, Outcome::AbortedByPeer))
        sendBlock(now);
}

/// The block without data, behind the last of the file, was the end.
void FileSender::sendNextBlock(Clock::time_point now) {
    const std::size_t sent = std::min(maxData, m_file.size() - m_position);
    if (sent == 0) {
        end(Outcome::Done);
        return;
    }
    m_position += sent;
    ++m_number;
    blockIsDone();
    sendBlock(now);
}

void FileSender::sendBlock(Clock::time_point now) {
    waitUntil(now + timings().packet);
    if (m_number == faults().abortAt) {
        end(Outcome::Aborted);
        return;
    }
    const std::string_view data = std::string_view(m_file).substr(m_position, maxData);
    const int number = m_number == faults().wrongNumberAt ? m_number + 1 : m_number;
    const std::size_t length = data.size() + checksumSize;
    std::string block{static_cast<char>(number >> 8), static_cast<char>(number & 0xFF),
                      static_cast<char>(length >> 8U), static_cast<char>(length & 0xFFU)};
    block += data;
    TCrc16 crc(0xFFFF);
    crc.Add(block);
    send(blockStart);
    send(block);
    send(crc.Value() >> 8);
    send(crc.Value() & 0xFF);
}
