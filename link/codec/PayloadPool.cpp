#include "PayloadPool.h"

#include <utility>

namespace {
/// Below this the allocator is as fast as we are.
constexpr std::size_t minSize = 1U << 10U;
} // namespace

void PayloadPool::keep(std::string& payload) {
    const bool isWorthIt = payload.capacity() >= minSize && payload.capacity() <= maxSize;
    if (!isWorthIt || m_spares.size() == maxCount)
        return;
    payload.clear();
    m_spares.push_back(std::move(payload));
    payload.clear();
}

std::string PayloadPool::take(std::size_t size) {
    std::string payload;
    if (size >= minSize && !m_spares.empty()) {
        payload.swap(m_spares.back());
        m_spares.pop_back();
    }
    return payload;
}
