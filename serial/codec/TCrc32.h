#pragma once

#include <cstdint>
#include <string_view>

/// A running CRC-32, beside TCrc16 for whoever needs a wider check; no transfer uses it.
///
/// Width 32, polynomial 0x04C11DB7 reflected (0xEDB88320), input and output reflected. Started
/// from 0xFFFFFFFF and inverted at the end by the caller it is the CRC of IEEE 802.3 and zlib,
/// published as CRC-32/ISO-HDLC: the check value over the digits 1 to 9 is 0xCBF43926.
class TCrc32 {
public:
    explicit TCrc32(unsigned int init) : m_value(init) {}

    /// Runs the CRC on over one byte.
    void Add(unsigned char byte);
    /// Runs the CRC on over `bytes`.
    void Add(std::string_view bytes);

    /// The CRC so far, not inverted.
    unsigned int Value() const { return m_value; }

private:
    std::uint32_t m_value;
};
