#pragma once

#include "KeyCodes.h"

#include <span>

class FlexLabel;
class LetterButton;
class Ui_Keyboard;

/// A letter of the main block; with Ctrl it sends its place in the alphabet.
struct AlphabetKey {
    LetterButton* Ui_Keyboard::*button;
    unsigned char letter;
};

/// A digit, a punctuation mark or the space bar.
struct CharacterKey {
    LetterButton* Ui_Keyboard::*button;
    KeyCodes codes;
};

/// A key with words on it, one for each modifier state.
struct LabelledKey {
    FlexLabel* Ui_Keyboard::*button;
    KeyCodes codes;
    std::array<const char*, 4> labels;
};

std::span<const AlphabetKey> alphabetKeys();
std::span<const CharacterKey> characterKeys();
std::span<const LabelledKey> labelledKeys();
