#include "LTermBuffer.h"

#include <algorithm>
#include <string_view>

namespace {

constexpr char separator = '\n';
constexpr unsigned char fileTransferType = 'X';
constexpr unsigned char enquiry = 5;

bool isType(char byte) {
    constexpr std::string_view types = "ACGMRSTVX";
    return types.find(byte) != std::string_view::npos;
}

/// Whether an instrument that wants something of a transfer begins with this byte.
bool isRequest(char byte) {
    return byte == enquiry || (byte >= 'K' && byte <= 'R');
}

} // namespace

void LTermBuffer::Add(const char* bytes, unsigned int count) {
    const char* next = bytes;
    const char* const end = bytes + count;
    while (next != end) {
        switch (m_state) {
        case State::Type:
            next = std::find_if(next, end, isType);
            if (next != end) {
                m_type = static_cast<unsigned char>(*next++);
                m_state = State::Separator;
            }
            break;
        case State::Separator:
            // A byte that is no line feed is dropped even if it is a type letter. So "AA\n" loses
            // its packet; that is how this line has always synchronised and is to stay.
            m_state = *next++ == separator ? State::LengthHigh : State::Type;
            break;
        case State::LengthHigh:
            m_lengthHigh = static_cast<unsigned char>(*next++);
            m_state = State::LengthLow;
            break;
        case State::LengthLow:
            startPayload(static_cast<unsigned char>(*next++));
            break;
        case State::Payload:
        case State::FileTransfer:
        case State::DroppedTransfer:
            next = takePayload(next, end);
            break;
        }
    }
}

void LTermBuffer::startPayload(unsigned char lengthLow) {
    m_length = (static_cast<std::uint32_t>(m_lengthHigh) << 8U) | lengthLow;
    if (m_length == 0) {
        m_state = State::Type;
        return;
    }
    m_taken = 0;
    if (m_type == fileTransferType) {
        m_state = State::FileTransfer;
        return;
    }
    m_payload = m_pool.take(m_length);
    m_state = State::Payload;
}

void LTermBuffer::startTransferBytes(char first) {
    m_dropping = m_dropping && !isRequest(first);
    if (m_dropping)
        m_state = State::DroppedTransfer;
}

const char* LTermBuffer::takePayload(const char* next, const char* end) {
    if (m_state == State::FileTransfer && m_taken == 0)
        startTransferBytes(*next);
    const auto run = std::min<std::ptrdiff_t>(m_length - m_taken, end - next);
    if (m_state == State::FileTransfer)
        m_fxBytes.insert(m_fxBytes.end(), next, next + run);
    else if (m_state == State::Payload)
        m_payload.append(next, static_cast<std::size_t>(run));
    m_taken += static_cast<std::uint32_t>(run);
    if (m_taken == m_length) {
        if (m_state == State::Payload)
            queuePayload();
        m_state = State::Type;
    }
    return next + run;
}

void LTermBuffer::queuePayload() {
    m_queued += m_payload.size() + packetCost;
    m_packets.emplace_back(m_type, std::move(m_payload));
    while (m_queued > maxQueued) {
        m_queued -= m_packets.front().second.size() + packetCost;
        m_packets.pop_front();
    }
}

bool LTermBuffer::nextItem(unsigned char& type, std::string& payload) {
    if (m_packets.empty())
        return false;
    m_pool.keep(payload);
    type = m_packets.front().first;
    payload = std::move(m_packets.front().second);
    m_queued -= payload.size() + packetCost;
    m_packets.pop_front();
    return true;
}

unsigned char LTermBuffer::GetFX() {
    if (m_fxBytes.empty())
        return 0;
    const char byte = m_fxBytes.front();
    m_fxBytes.pop_front();
    return static_cast<unsigned char>(byte);
}

void LTermBuffer::dropFX() {
    m_fxBytes.clear();
    m_dropping = true;
    if (m_state == State::FileTransfer)
        m_state = State::DroppedTransfer;
}

bool LTermBuffer::IncomingFXPacket(unsigned int& mode) {
    while (hasFX()) {
        switch (GetFX()) {
        case enquiry:
        case 'L':
            mode = 0;
            return true;
        case 'R':
            mode = 1;
            return true;
        case 'K':
            mode = 0;
            return false;
        case 'Q':
            mode = 1;
            return false;
        default:
            break;
        }
    }
    return false;
}
