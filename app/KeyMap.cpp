#include "KeyMap.h"

#include <algorithm>
#include <array>

namespace {

/// A key's codes by modifier value: plain, Shift, Meta, Shift and Meta.
using Codes = std::array<unsigned short, 4>;

struct Row {
    int key;
    Codes codes;
};

/// The codes of a key that has a group of its own and carries the modifier value in the low byte.
constexpr Codes inGroup(unsigned char group) {
    const unsigned int plain = group * 0x100U;
    Codes codes{};
    for (std::size_t m = 0; m < codes.size(); ++m)
        codes[m] = static_cast<unsigned short>(plain + m);
    return codes;
}

constexpr std::array rows{
    Row{Qt::Key_Escape, {27, 27, 27, 27}},
    Row{Qt::Key_Backspace, {8, 0x0801, 0x0802, 0x0803}},
    Row{Qt::Key_Return, {13, 10, 0x0D02, 0x0D03}},
    Row{Qt::Key_Enter, {13, 10, 0x0D02, 0x0D03}},
    Row{Qt::Key_PageUp, inGroup(0x21)},
    Row{Qt::Key_PageDown, inGroup(0x22)},
    Row{Qt::Key_End, inGroup(0x23)},
    Row{Qt::Key_Home, inGroup(0x24)},
    Row{Qt::Key_Left, inGroup(0x25)},
    Row{Qt::Key_Up, inGroup(0x26)},
    Row{Qt::Key_Right, inGroup(0x27)},
    Row{Qt::Key_Down, inGroup(0x28)},
    Row{Qt::Key_F1, inGroup(0x60)},
    Row{Qt::Key_F2, inGroup(0x61)},
    Row{Qt::Key_F3, inGroup(0x62)},
    Row{Qt::Key_F4, inGroup(0x63)},
    Row{Qt::Key_F5, inGroup(0x64)},
};

std::optional<unsigned short> plainCode(int key, const QString& text) {
    if (!text.isEmpty())
        return static_cast<unsigned short>(text.front().unicode() & 0xFFU);
    if (key >= Qt::Key_A && key <= Qt::Key_Z)
        return static_cast<unsigned short>(key - 64);
    if (key >= Qt::Key_0 && key <= Qt::Key_9)
        return static_cast<unsigned short>(key - 32);
    return std::nullopt;
}

} // namespace

namespace keymap {

unsigned short modifierBits(Qt::KeyboardModifiers modifiers) {
    const int shift = modifiers.testFlag(Qt::ShiftModifier) ? 1 : 0;
    const int meta = modifiers.testFlag(Qt::MetaModifier) ? 2 : 0;
    return static_cast<unsigned short>(shift + meta);
}

std::optional<unsigned short> codeFor(int key, Qt::KeyboardModifiers modifiers,
                                      const QString& text) {
    if (key == Qt::Key_Shift || key == Qt::Key_Meta)
        return std::nullopt;
    const auto* row = std::ranges::find(rows, key, &Row::key);
    if (row != rows.end())
        return row->codes.at(modifierBits(modifiers));
    return plainCode(key, text);
}

} // namespace keymap
