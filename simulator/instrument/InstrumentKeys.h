#pragma once

#include <cstdint>
#include <string>

/// Key codes as an instrument receives them: plain characters are codes below 256; special keys
/// are a group in the high byte and the modifiers in the low one.
namespace instrumentkey {

inline constexpr std::uint16_t backspace = 8;
inline constexpr std::uint16_t newline = 10;
inline constexpr std::uint16_t enter = 13;
inline constexpr std::uint16_t escape = 27;
inline constexpr std::uint16_t erase = 127;

/// Bits of a special key's low byte.
inline constexpr std::uint16_t shift = 1;
inline constexpr std::uint16_t ctrl = 2;

/// The high byte of a special key's code.
enum class Group : std::uint8_t {
    DeleteLine = 0x08,
    Enter = 0x0D,
    Labels = 0x12,
    Escape = 0x1B,
    Halt = 0x1D,
    PageUp = 0x21,
    PageDown = 0x22,
    End = 0x23,
    Home = 0x24,
    Left = 0x25,
    Up = 0x26,
    Right = 0x27,
    Down = 0x28,
    F1 = 0x60,
    F2 = 0x61,
    F3 = 0x62,
    F4 = 0x63,
    F5 = 0x64,
};

/// The group of a code; of no meaning for a plain character.
constexpr Group groupOf(std::uint16_t code) {
    return static_cast<Group>(code >> 8U);
}

/// A special key with its modifiers.
constexpr std::uint16_t codeOf(Group group, std::uint16_t modifiers = 0) {
    return static_cast<std::uint16_t>((static_cast<unsigned int>(group) << 8U) | modifiers);
}

/// What is engraved on the key, with its modifiers in front: "Shift+F2", "Enter", "'a'". UTF-8.
std::string nameOf(std::uint16_t code);

/// Four hexadecimal digits after "0x".
std::string hexOf(std::uint16_t code);

} // namespace instrumentkey
