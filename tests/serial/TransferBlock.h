#pragma once

#include <QByteArray>

/// The blocks of a file transfer, put together from their definition and not by the program's own
/// code.
namespace transferblock {

/// CRC-16/IBM-3740 by its definition, a bit at a time; high byte first.
inline QByteArray checksum(const QByteArray& bytes) {
    unsigned int crc = 0xFFFF;
    for (const char byte : bytes) {
        crc ^= static_cast<unsigned int>(static_cast<unsigned char>(byte)) << 8U;
        for (int bit = 0; bit < 8; ++bit)
            crc = ((crc << 1U) ^ ((crc & 0x8000U) != 0 ? 0x1021U : 0U)) & 0xFFFFU;
    }
    return QByteArray::fromHex(QByteArray::number(crc + 0x10000U, 16).last(4));
}

/// A sound block of any length, without the block-start byte.
inline QByteArray build(unsigned int number, const QByteArray& data) {
    const unsigned int length = static_cast<unsigned int>(data.size()) + 2;
    const QByteArray bytes =
        QByteArray::fromHex(QByteArray::number(0x10000U + (number & 0xFFFFU), 16).last(4) +
                            QByteArray::number(0x10000U + length, 16).last(4)) +
        data;
    return bytes + checksum(bytes);
}

} // namespace transferblock
