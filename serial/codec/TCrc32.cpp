#include "TCrc32.h"

#include <array>

namespace {

constexpr std::uint32_t reflectedPolynomial = 0xEDB88320;

/// Entry i is i shifted right through eight steps.
constexpr std::array<std::uint32_t, 256> makeCrc32Table() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t crc = i;
        for (int step = 0; step < 8; ++step)
            crc = (crc & 1U) != 0 ? (crc >> 1U) ^ reflectedPolynomial : crc >> 1U;
        table[i] = crc;
    }
    return table;
}

// Built once for all instances: by the compiler.
constexpr std::array<std::uint32_t, 256> crc32Table = makeCrc32Table();

} // namespace

void TCrc32::Add(unsigned char byte) {
    m_value = (m_value >> 8U) ^ crc32Table[(m_value ^ byte) & 0xFFU];
}

void TCrc32::Add(std::string_view bytes) {
    for (const char byte : bytes)
        Add(static_cast<unsigned char>(byte));
}
