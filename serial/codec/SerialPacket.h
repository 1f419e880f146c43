#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Packets of the serial line in the direction to the instrument. Pure functions; any thread.
namespace serialpacket {

/// The longest payload that the 2-byte length can tell.
inline constexpr std::size_t maxPayload = 0xFFFF;

/// One packet: the type letter, the length of `payload` in two bytes, high byte first, `payload`.
/// There is no line feed after the letter in this direction. What is over maxPayload is cut off.
std::string build(char type, std::string_view payload);

/// `payload` in as many packets of one type as it needs; an empty one needs one.
std::string buildAll(char type, std::string_view payload);

} // namespace serialpacket
