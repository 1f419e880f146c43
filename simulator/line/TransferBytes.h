#pragma once

#include <cstddef>

/// The bytes that steer a file transfer.
namespace transferbytes {

inline constexpr char enquiry = 0x05;
inline constexpr char accept = 0x06;
inline constexpr char blockStart = 0x1D;

/// The instrument asks for a file, or offers one.
inline constexpr char askForFile = 'K';
inline constexpr char offerFile = 'L';

inline constexpr int blockAccepted = 0;
inline constexpr int checksumError = 1;
inline constexpr int receiverAborts = 2;
inline constexpr int shortBlock = 3;
inline constexpr int outOfSequence = 4;

/// Block number and length, two bytes each.
inline constexpr std::size_t headerSize = 4;
inline constexpr std::size_t checksumSize = 2;
inline constexpr std::size_t maxData = 1020;

} // namespace transferbytes
