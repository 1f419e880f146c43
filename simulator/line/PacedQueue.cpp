#include "PacedQueue.h"

#include <algorithm>

PacedQueue::PacedQueue(int baud)
    : m_byteTime(baud <= 0 ? Clock::duration::zero()
                           : std::chrono::nanoseconds(std::chrono::seconds(bitsPerByte)) / baud) {}

void PacedQueue::push(std::string_view bytes, Clock::time_point now) {
    if (m_bytes.empty())
        m_start = std::max(m_start, now);
    m_bytes += bytes;
}

std::string PacedQueue::pop(Clock::time_point now) {
    std::size_t count = now < m_start ? 0 : m_bytes.size();
    if (count > 0 && m_byteTime > Clock::duration::zero())
        count = std::min(count, static_cast<std::size_t>((now - m_start) / m_byteTime));
    std::string out = m_bytes.substr(0, count);
    m_bytes.erase(0, count);
    m_start += m_byteTime * static_cast<Clock::rep>(count);
    return out;
}

std::optional<PacedQueue::Clock::time_point> PacedQueue::nextDue() const {
    if (m_bytes.empty())
        return std::nullopt;
    return m_start + m_byteTime;
}
