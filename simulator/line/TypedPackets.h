#pragma once

#include <optional>
#include <string>
#include <string_view>

/// The instrument's packets as a serial line carries them: a letter, a line feed, the length of the
/// payload in two bytes, high byte first, the payload. Pure functions; any thread.
namespace typedpackets {

/// One packet to the program; what is over 65535 bytes is cut off.
std::string build(char type, std::string_view payload);

/// An instrument packet as it goes onto the line: a screen update as one packet an item, anything
/// without a counterpart as nothing.
std::string fromPacket(std::string_view packet);

/// A packet from the program as an instrument packet, if it is one.
std::optional<std::string> toPacket(char type, std::string_view payload);

} // namespace typedpackets
