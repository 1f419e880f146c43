#include "LineNoise.h"

#include <utility>

bool LineNoise::happens(double rate) {
    if (rate <= 0)
        return false;
    constexpr double values = 4294967296.0;
    return static_cast<double>(m_random()) / values < rate;
}

std::string LineNoise::pass(std::string_view bytes) {
    std::string out;
    out.reserve(bytes.size());
    for (const char byte : bytes) {
        if (happens(m_faults.stalls))
            m_stall += m_faults.stall;
        if (happens(m_faults.drops))
            continue;
        const bool damaged = happens(m_faults.bitErrors);
        const unsigned int bit = damaged ? 1U << (m_random() % 8) : 0U;
        const char passed = static_cast<char>(static_cast<unsigned char>(byte) ^ bit);
        out.append(happens(m_faults.duplicates) ? 2 : 1, passed);
    }
    return out;
}

std::chrono::milliseconds LineNoise::takeStall() {
    return std::exchange(m_stall, std::chrono::milliseconds(0));
}
