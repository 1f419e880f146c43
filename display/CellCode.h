#pragma once

#include "CellGlyph.h"
#include "CellPainter.h"
#include "ColorTables.h"

/// What one cell of the character screen shows: a character code, and which of the colour pairs of
/// ColorTables it is in. A value; any thread.
struct CellCode {
    unsigned char code = 0;
    unsigned char color = 0;

    /// How many different cells there are.
    static constexpr unsigned count = 256 * ColorTables::attributeCount;

    /// The cell of a character code and an attribute as the instrument sends them: an attribute of
    /// 4 or more counts as 0.
    static CellCode of(char code, char attribute) {
        const auto color = static_cast<unsigned char>(attribute);
        return {static_cast<unsigned char>(code),
                color < ColorTables::attributeCount ? color : static_cast<unsigned char>(0)};
    }

    /// A number below `count`.
    unsigned number() const { return color * 256U + code; }

    bool isBlank() const { return cellGlyph(code).kind == CellGlyph::Kind::Blank; }

    Cell in(const ColorTables& colors) const {
        return {cellGlyph(code), colors.foreground[color], colors.background[color]};
    }

    friend bool operator==(const CellCode&, const CellCode&) = default;
};
