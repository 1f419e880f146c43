#include "TCrc16.h"

#include <array>
#include <cstddef>

namespace {

constexpr unsigned int polynomial = 0x1021;
constexpr unsigned int topBit = 0x8000;

/// Entry i is the register after the byte i, placed in the high half, went through eight steps.
constexpr std::array<std::uint16_t, 256> makeCrc16Table() {
    std::array<std::uint16_t, 256> table{};
    for (unsigned int i = 0; i < table.size(); ++i) {
        unsigned int crc = i << 8U;
        for (int step = 0; step < 8; ++step)
            crc = (crc & topBit) != 0 ? (crc << 1U) ^ polynomial : crc << 1U;
        table[i] = static_cast<std::uint16_t>(crc);
    }
    return table;
}

// Built once for all instances: by the compiler.
constexpr std::array<std::uint16_t, 256> crc16Table = makeCrc16Table();

} // namespace

void TCrc16::Add(unsigned char byte) {
    const std::size_t index = static_cast<std::size_t>(m_value >> 8U) ^ byte;
    m_value = static_cast<std::uint16_t>((m_value << 8U) ^ crc16Table[index]);
}

void TCrc16::Add(std::string_view bytes) {
    for (const char byte : bytes)
        Add(static_cast<unsigned char>(byte));
}
