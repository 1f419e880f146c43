#include "MessageBuffer.h"

#include <algorithm>

namespace {
constexpr char openByte = '<';
constexpr char closeByte = '>';
} // namespace

void MessageBuffer::Add(const char* bytes, unsigned int count) {
    const char* next = bytes;
    const char* const end = bytes + count;
    while (next != end) {
        switch (m_state) {
        case State::AwaitingOpen:
            m_tag.clear();
            next = std::find(next, end, openByte);
            if (next != end) {
                m_state = State::InTag;
                ++next;
            }
            break;
        case State::InTag:
            next = addToTag(next, end);
            break;
        case State::Length1:
        case State::Length2:
        case State::Length3:
        case State::Length4:
            addLengthByte(static_cast<unsigned char>(*next++));
            break;
        case State::InPayload:
            next = addToPayload(next, end);
            break;
        }
    }
}

const char* MessageBuffer::addToTag(const char* next, const char* end) {
    const char* const close = std::find(next, end, closeByte);
    m_tag.append(next, close);
    if (close == end)
        return end;
    m_state = State::Length1;
    m_length = 0;
    return close + 1;
}

void MessageBuffer::addLengthByte(unsigned char byte) {
    m_length = (m_length << 8U) | byte;
    if (m_state != State::Length4) {
        m_state = static_cast<State>(static_cast<int>(m_state) + 1);
        return;
    }
    m_payload = m_pool.take(m_length);
    m_state = State::InPayload;
    if (m_length == 0)
        _LockMessage();
}

const char* MessageBuffer::addToPayload(const char* next, const char* end) {
    const std::size_t missing = m_length - m_payload.size();
    const std::size_t run = std::min(missing, static_cast<std::size_t>(end - next));
    m_payload.append(next, run);
    if (run == missing)
        _LockMessage();
    return next + run;
}

void MessageBuffer::_LockMessage() {
    m_messages.emplace_back(m_tag, std::move(m_payload));
    m_payload.clear();
    m_state = State::AwaitingOpen;
}

bool MessageBuffer::NextMessage(std::string& tag, std::string& payload) {
    if (m_messages.empty())
        return false;
    m_pool.keep(payload);
    tag = std::move(m_messages.front().first);
    payload = std::move(m_messages.front().second);
    m_messages.pop_front();
    return true;
}
