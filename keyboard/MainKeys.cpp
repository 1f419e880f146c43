#include "MainKeys.h"

#include "ui_Keyboard.h"

namespace {

// clang-format off

constexpr AlphabetKey kAlphabetKeys[] = {
    {&Ui_Keyboard::k_a, 'a'}, {&Ui_Keyboard::k_b, 'b'}, {&Ui_Keyboard::k_c, 'c'},
    {&Ui_Keyboard::k_d, 'd'}, {&Ui_Keyboard::k_e, 'e'}, {&Ui_Keyboard::k_f, 'f'},
    {&Ui_Keyboard::k_g, 'g'}, {&Ui_Keyboard::k_h, 'h'}, {&Ui_Keyboard::k_i, 'i'},
    {&Ui_Keyboard::k_j, 'j'}, {&Ui_Keyboard::k_k, 'k'}, {&Ui_Keyboard::k_l, 'l'},
    {&Ui_Keyboard::k_m, 'm'}, {&Ui_Keyboard::k_n, 'n'}, {&Ui_Keyboard::k_o, 'o'},
    {&Ui_Keyboard::k_p, 'p'}, {&Ui_Keyboard::k_q, 'q'}, {&Ui_Keyboard::k_r, 'r'},
    {&Ui_Keyboard::k_s, 's'}, {&Ui_Keyboard::k_t, 't'}, {&Ui_Keyboard::k_u, 'u'},
    {&Ui_Keyboard::k_v, 'v'}, {&Ui_Keyboard::k_w, 'w'}, {&Ui_Keyboard::k_x, 'x'},
    {&Ui_Keyboard::k_y, 'y'}, {&Ui_Keyboard::k_z, 'z'},
};

// What Ctrl makes of these keys follows no rule: the instrument assigns it so.
constexpr CharacterKey kCharacterKeys[] = {
    // key                             normal Shift Ctrl Ctrl+Shift
    {&Ui_Keyboard::k_1,              {    49,    33,  17,   1}},
    {&Ui_Keyboard::k_2,              {    50,    64,  64,   0}},
    {&Ui_Keyboard::k_3,              {    51,    35,  19,   3}},
    {&Ui_Keyboard::k_4,              {    52,    36,  20,   4}},
    {&Ui_Keyboard::k_5,              {    53,    37,  21,   5}},
    {&Ui_Keyboard::k_6,              {    54,    94,  22,  30}},
    {&Ui_Keyboard::k_7,              {    55,    38,  23,   6}},
    {&Ui_Keyboard::k_8,              {    56,    42,  24,  10}},
    {&Ui_Keyboard::k_9,              {    57,    40,  25,   8}},
    {&Ui_Keyboard::k_0,              {    48,    41,  16,   9}},
    {&Ui_Keyboard::k_minus,          {    45,    95,  13,  31}},
    {&Ui_Keyboard::k_equal,          {    61,    43,  29,  11}},
    {&Ui_Keyboard::k_leftBracket,    {    91,   123,  27,  27}},
    {&Ui_Keyboard::k_rightBracket,   {    93,   125,  29,  29}},
    {&Ui_Keyboard::k_semicolon,      {    59,    58,  27,  26}},
    {&Ui_Keyboard::k_apostrophe,     {    39,    34,   7,   2}},
    {&Ui_Keyboard::k_comma,          {    44,    60,  12,  28}},
    {&Ui_Keyboard::k_period,         {    46,    62,  14,  30}},
    {&Ui_Keyboard::k_bar,            {   124,   126,  28,  30}},
    {&Ui_Keyboard::k_space,          {    32,    92,   0,  28}},
};

constexpr LabelledKey kLabelledKeys[] = {
    {&Ui_Keyboard::k_escape, {27, 6913, 7424, 0},
     {QT_TRANSLATE_NOOP("Keyboard", "escape"), QT_TRANSLATE_NOOP("Keyboard", "escape"),
      QT_TRANSLATE_NOOP("Keyboard", "HALT"), QT_TRANSLATE_NOOP("Keyboard", "XXXX")}},
    {&Ui_Keyboard::k_enter, {13, 10, 3330, 3331},
     {QT_TRANSLATE_NOOP("Keyboard", "enter"), QT_TRANSLATE_NOOP("Keyboard", "newline"),
      QT_TRANSLATE_NOOP("Keyboard", "enter"), QT_TRANSLATE_NOOP("Keyboard", "enter")}},
    {&Ui_Keyboard::k_delete, {8, 2049, 2050, 2051},
     {QT_TRANSLATE_NOOP("Keyboard", "del"), QT_TRANSLATE_NOOP("Keyboard", "delln"),
      QT_TRANSLATE_NOOP("Keyboard", "delln"), QT_TRANSLATE_NOOP("Keyboard", "delln")}},
};

// clang-format on

} // namespace

std::span<const AlphabetKey> alphabetKeys() {
    return kAlphabetKeys;
}

std::span<const CharacterKey> characterKeys() {
    return kCharacterKeys;
}

std::span<const LabelledKey> labelledKeys() {
    return kLabelledKeys;
}
