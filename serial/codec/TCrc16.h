#pragma once

#include <cstdint>
#include <string_view>

/// A running CRC-16, the check of the blocks of a file transfer.
///
/// Width 16, polynomial 0x1021, not reflected, no final XOR. Started from 0xFFFF, as the block
/// protocol does, it is the published CRC-16/CCITT-FALSE, also called CRC-16/IBM-3740: the check
/// value over the digits 1 to 9 is 0x29B1, and running it on over its own two bytes, high byte
/// first, leaves 0.
class TCrc16 {
public:
    explicit TCrc16(unsigned short init) : m_value(init) {}

    /// Runs the CRC on over one byte.
    void Add(unsigned char byte);
    /// Runs the CRC on over `bytes`.
    void Add(std::string_view bytes);

    /// The CRC so far.
    unsigned short Value() const { return m_value; }

private:
    std::uint16_t m_value;
};
