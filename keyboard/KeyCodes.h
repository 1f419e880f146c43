#pragma once

#include <QString>

#include <array>

/// The codes that one key of the instrument's keypad sends: normal, with Shift, with Ctrl, with
/// both. High byte the key group, low byte the key; plain characters are below 256.
using KeyCodes = std::array<unsigned short, 4>;

/// Which of a key's four codes counts: bit 0 Shift, bit 1 Ctrl.
constexpr unsigned char modifierState(bool shift, bool ctrl) {
    return static_cast<unsigned char>((ctrl ? 2 : 0) | (shift ? 1 : 0));
}

/// The codes of a small letter; Ctrl sends `ctrlCode`, with or without Shift.
constexpr KeyCodes letterCodes(unsigned char letter, unsigned char ctrlCode) {
    return {letter, static_cast<unsigned short>(letter - 32), ctrlCode, ctrlCode};
}

/// The codes of a key that is no character: its byte is the group, the state is the key.
constexpr KeyCodes nonAsciiCodes(unsigned char keyByte) {
    const auto code = [keyByte](int state) {
        return static_cast<unsigned short>(keyByte * 256 + state);
    };
    return {code(0), code(1), code(2), code(3)};
}

/// What a key that sends `code` shows: the character of the low byte, a control code in two
/// hexadecimal places. An ampersand is doubled, so that a button shows one.
QString keyLabel(unsigned short code);

/// What a screen reader says of such a key: keyLabel() in words where the label is cryptic.
QString spokenKey(unsigned short code);
