#pragma once

#include "GraphicsBitmap.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

/// What an instrument's LCD shows: 40 x 8 characters with an attribute each and a cursor, or the
/// graphics bitmap in their place.
///
/// A value: pages draw onto a fresh one, transports send it. Columns and rows count from 1; what
/// lies outside the screen is cut off.
class InstrumentScreen {
public:
    static constexpr int columns = 40;
    static constexpr int rows = 8;

    enum class Attribute : char { Normal, Inverse, Highlight, InverseHighlight };
    enum class CursorShape : char { None, Underline, Block };

    /// Writes UTF-8 text from a cell to the right, never onto the next row.
    void put(int column, int row, std::string_view utf8, Attribute attribute = Attribute::Normal);

    /// The same for codes of the instrument's own character set.
    void putCodes(int column, int row, std::string_view codes,
                  Attribute attribute = Attribute::Normal);

    /// Gives `width` cells another attribute and leaves their characters.
    void setAttribute(int column, int row, int width, Attribute attribute);

    void setCursor(CursorShape shape, int column, int row);

    /// Shows this bitmap instead of the characters.
    void showGraphics(GraphicsBitmap bitmap) { m_graphics = std::move(bitmap); }

    /// 320 character codes, row after row.
    const std::string& text() const { return m_text; }
    /// 320 attributes, row after row.
    const std::string& attributes() const { return m_attributes; }
    const std::optional<GraphicsBitmap>& graphics() const { return m_graphics; }

    /// The update that brings a mirror of this screen up to date: a "BNDL" packet with the items
    /// T, A and R, or with G alone while graphics is shown.
    std::string updatePacket() const;

    /// One row as UTF-8, to look at.
    std::string rowText(int row) const;

    bool operator==(const InstrumentScreen&) const = default;

private:
    static constexpr std::size_t cellCount = std::size_t{columns} * rows;

    struct Cursor {
        CursorShape shape = CursorShape::None;
        char column = 1;
        char row = 1;
        bool operator==(const Cursor&) const = default;
    };

    std::string m_text = std::string(cellCount, ' ');
    std::string m_attributes = std::string(cellCount, '\0');
    Cursor m_cursor;
    std::optional<GraphicsBitmap> m_graphics;
};
