#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Instrument packets: a 4-byte field (0 when built here, skipped on receipt), a four-letter type
/// and a body. Pure functions over bytes; any thread.
namespace packet {

/// Bytes in front of a packet's body.
inline constexpr std::size_t headerSize = 8;
/// Bytes of a packet's type.
inline constexpr std::size_t typeSize = 4;

/// The four bytes of `value`, most significant first.
std::string fourByteValue(unsigned int value);

/// The inverse of fourByteValue: the first four bytes of `bytes`, most significant first. Bytes
/// that are not there count as 0.
unsigned int unsignedFromBytes(std::string_view bytes);

/// `head`, the length of `data` in four bytes, `data`: a frame when the head is "<D>", a bundle
/// item when it is the item's one-letter code.
std::string bundle(std::string_view head, std::string_view data);

/// A complete packet: four zero bytes, the four-letter `type`, `body`.
std::string build(std::string_view type, std::string_view body);

/// A received packet taken apart; the views point into the bytes that were given.
struct View {
    std::string_view type;
    std::string_view body;
};

/// Takes a packet apart; nothing when it is too short to have a type.
std::optional<View> parse(std::string_view bytes);

/// A text body ends at its first NUL, if it has one.
std::string_view untilNul(std::string_view body);

} // namespace packet
