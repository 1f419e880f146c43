#pragma once

#include <array>
#include <span>

/// What a key of the palette, known by its object name, sends and shows in the states normal,
/// Shift, Ctrl, Ctrl+Shift.
struct KeypadRow {
    const char* key;
    std::array<unsigned short, 4> codes;
    std::array<const char*, 4> labels;
};

/// Every key of the instrument's keypad, written down by hand: what the palette is held against.
std::span<const KeypadRow> keypadTable();
