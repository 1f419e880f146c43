#include "FileSender.h"

#include "TCrc16.h"
#include "TransferBytes.h"

#include <algorithm>
#include <utility>

using namespace transferbytes;

FileSender::FileSender(std::string file, const LineFaults& faults, const TransferTimings& timings,
                       Clock::time_point now)
    : m_file(std::move(file)), m_faults(faults), m_timings(timings) {
    send(offerFile);
    if (!m_faults.neverAnswers)
        send(enquiry);
    waitUntil(now + m_timings.character);
}

void FileSender::timeOut(Clock::time_point now) {
    if (m_accepted || m_attempts++ >= m_timings.attempts) {
        end(Outcome::TimedOut);
        return;
    }
    if (!m_faults.neverAnswers)
        send(enquiry);
    waitUntil(now + m_timings.character);
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
    switch (reply) {
    case blockAccepted: {
        const std::size_t sent = std::min(maxData, m_file.size() - m_position);
        if (sent == 0) {
            end(Outcome::Done);
            return;
        }
        m_position += sent;
        ++m_number;
        m_retries = 0;
        sendBlock(now);
        break;
    }
    case checksumError:
    case shortBlock:
        if (++m_retries > m_timings.retries)
            end(Outcome::TooNoisy);
        else
            sendBlock(now);
        break;
    case receiverAborts:
        end(Outcome::AbortedByPeer);
        break;
    case outOfSequence:
        end(Outcome::OutOfSequence);
        break;
    default:
        break;
    }
}

void FileSender::sendBlock(Clock::time_point now) {
    waitUntil(now + m_timings.packet);
    if (m_number == m_faults.abortAt) {
        end(Outcome::Aborted);
        return;
    }
    const std::string_view data = std::string_view(m_file).substr(m_position, maxData);
    const int number = m_number == m_faults.wrongNumberAt ? m_number + 1 : m_number;
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
