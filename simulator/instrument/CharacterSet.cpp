#include "CharacterSet.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace charset {
namespace {

struct Symbol {
    unsigned char code;
    char32_t character;
};

constexpr std::array symbols{
    Symbol{4, U'◆'},   Symbol{9, U'◾'},   Symbol{16, U'▶'},  Symbol{17, U'◂'},  Symbol{24, U'↑'},
    Symbol{25, U'↓'},  Symbol{26, U'→'},  Symbol{27, U'←'},  Symbol{30, U'▲'},  Symbol{31, U'▼'},
    Symbol{127, U'Δ'}, Symbol{179, U'│'}, Symbol{185, U'╣'}, Symbol{186, U'║'}, Symbol{187, U'╗'},
    Symbol{188, U'╝'}, Symbol{191, U'┐'}, Symbol{192, U'└'}, Symbol{193, U'┴'}, Symbol{194, U'┬'},
    Symbol{195, U'├'}, Symbol{196, U'─'}, Symbol{197, U'┼'}, Symbol{200, U'╚'}, Symbol{201, U'╔'},
    Symbol{202, U'╩'}, Symbol{203, U'╦'}, Symbol{204, U'╠'}, Symbol{205, U'═'}, Symbol{206, U'╬'},
    Symbol{217, U'┘'}, Symbol{218, U'┌'}, Symbol{219, U'█'}, Symbol{220, U'▄'}, Symbol{221, U'▌'},
    Symbol{222, U'▐'}, Symbol{223, U'▀'}, Symbol{227, U'π'}, Symbol{230, U'µ'}, Symbol{248, U'°'},
};

constexpr char32_t greekMu = U'\u03BC'; // what some keyboards give for the micro sign
constexpr char32_t invalid = 0xFFFFFFFF;

const Symbol* symbolOfCode(unsigned char code) {
    const auto* found = std::ranges::find(symbols, code, &Symbol::code);
    return found == symbols.end() ? nullptr : found;
}

char codeOf(char32_t character) {
    if (character == greekMu)
        character = U'µ';
    const auto* found = std::ranges::find(symbols, character, &Symbol::character);
    if (found != symbols.end())
        return static_cast<char>(found->code);
    if (character < 0x20 || (character >= 0x7F && character < 0xA0))
        return ' ';
    // A Latin-1 letter whose code the display draws as something else cannot be shown.
    if (character > 0xFF || symbolOfCode(static_cast<unsigned char>(character)) != nullptr)
        return '?';
    return static_cast<char>(character);
}

/// Takes one character off the front of `text`; invalid for a byte that starts none.
char32_t takeCharacter(std::string_view& text) {
    const auto byteAt = [&text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U;
    };
    const unsigned int first = byteAt(0);
    const std::size_t length = first < 0x80              ? 1
                               : (first & 0xE0U) == 0xC0 ? 2
                               : (first & 0xF0U) == 0xE0 ? 3
                               : (first & 0xF8U) == 0xF0 ? 4
                                                         : 0;
    char32_t character = length <= 1 ? first : first & (0xFFU >> (length + 1));
    bool sound = length > 0;
    for (std::size_t i = 1; i < length; ++i) {
        sound = sound && (byteAt(i) & 0xC0U) == 0x80;
        character = (character << 6U) | (byteAt(i) & 0x3FU);
    }
    text.remove_prefix(sound ? length : 1);
    return sound ? character : invalid;
}

void appendUtf8(std::string& text, char32_t character) {
    const auto append = [&text](char32_t byte) { text.push_back(static_cast<char>(byte)); };
    if (character < 0x80) {
        append(character);
    } else if (character < 0x800) {
        append(0xC0U | (character >> 6U));
        append(0x80U | (character & 0x3FU));
    } else {
        append(0xE0U | (character >> 12U));
        append(0x80U | ((character >> 6U) & 0x3FU));
        append(0x80U | (character & 0x3FU));
    }
}

} // namespace

std::string fromUtf8(std::string_view text) {
    std::string codes;
    while (!text.empty())
        codes.push_back(codeOf(takeCharacter(text)));
    return codes;
}

std::string toUtf8(std::string_view codes) {
    std::string text;
    for (const char c : codes) {
        const auto code = static_cast<unsigned char>(c);
        if (const Symbol* symbol = symbolOfCode(code))
            appendUtf8(text, symbol->character);
        else
            appendUtf8(text, code < 0x20 || (code >= 0x80 && code < 0xA0) ? U' ' : code);
    }
    return text;
}

} // namespace charset
