#include "InstrumentKeys.h"

#include "CharacterSet.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace instrumentkey {
namespace {

struct GroupName {
    Group group;
    std::string_view name;
};

constexpr std::array groupNames{
    GroupName{Group::DeleteLine, "Delete line"},
    GroupName{Group::Enter, "Enter"},
    GroupName{Group::Labels, "Labels"},
    GroupName{Group::Escape, "Escape"},
    GroupName{Group::Halt, "Halt"},
    GroupName{Group::PageUp, "Page up"},
    GroupName{Group::PageDown, "Page down"},
    GroupName{Group::End, "End"},
    GroupName{Group::Home, "Home"},
    GroupName{Group::Left, "Left"},
    GroupName{Group::Up, "Up"},
    GroupName{Group::Right, "Right"},
    GroupName{Group::Down, "Down"},
    GroupName{Group::F1, "F1"},
    GroupName{Group::F2, "F2"},
    GroupName{Group::F3, "F3"},
    GroupName{Group::F4, "F4"},
    GroupName{Group::F5, "F5"},
};

struct CharacterName {
    std::uint16_t code;
    std::string_view name;
};

constexpr std::array characterNames{
    CharacterName{backspace, "Backspace"}, CharacterName{9, "Tab"},
    CharacterName{newline, "Newline"},     CharacterName{enter, "Enter"},
    CharacterName{escape, "Escape"},       CharacterName{' ', "Space"},
    CharacterName{erase, "Delete"},
};

std::string nameOfCharacter(std::uint16_t code) {
    const auto* found = std::ranges::find(characterNames, code, &CharacterName::code);
    if (found != characterNames.end())
        return std::string(found->name);
    const char character = static_cast<char>(code);
    if (code < ' ')
        return std::string("Ctrl+") + static_cast<char>(character + '@');
    return std::string("'").append(charset::toUtf8({&character, 1})).append("'");
}

} // namespace

std::string nameOf(std::uint16_t code) {
    if (code < 0x100)
        return nameOfCharacter(code);
    const auto* found = std::ranges::find(groupNames, groupOf(code), &GroupName::group);
    const unsigned int modifiers = code & 0xFFU;
    if (found == groupNames.end() || modifiers > (shift | ctrl))
        return "unknown";
    std::string name;
    if ((modifiers & shift) != 0)
        name += "Shift+";
    if ((modifiers & ctrl) != 0)
        name += "Ctrl+";
    return name.append(found->name);
}

std::string hexOf(std::uint16_t code) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string hex = "0x";
    for (const unsigned int bits : {12U, 8U, 4U, 0U})
        hex.push_back(digits[(static_cast<unsigned int>(code) >> bits) & 0xFU]);
    return hex;
}

} // namespace instrumentkey
