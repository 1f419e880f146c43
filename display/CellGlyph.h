#pragma once

#include <QChar>

/// What the instrument's character set puts into one cell. A value; any thread.
struct CellGlyph {
    enum class Kind : unsigned char {
        Blank,     ///< nothing beyond the background
        Character, ///< `character`, centred in the cell
        SingleBox, ///< one line towards each of `sides`
        DoubleBox, ///< a pair of lines towards each of `sides`
        Block,     ///< the part of the cell that touches all of `sides`, filled
    };

    /// Sides of a cell, to be combined.
    enum Side : unsigned char { Left = 1, Right = 2, Up = 4, Down = 8 };

    Kind kind = Kind::Blank;
    unsigned char sides = 0;
    QChar character;

    bool reaches(Side side) const { return (sides & side) != 0; }

    friend bool operator==(const CellGlyph&, const CellGlyph&) = default;
};

/// The glyph of an instrument character code: some codes are symbols, some box pieces and blocks,
/// and all others, also those that are box pieces elsewhere, are the Latin-1 character.
CellGlyph cellGlyph(unsigned char code);
