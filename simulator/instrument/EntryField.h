#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// A small text field of three lines with a cursor, edited by key codes. It inserts; a full last
/// line scrolls the first one out.
class EntryField {
public:
    static constexpr std::size_t lineCount = 3;
    static constexpr std::size_t lineLength = 36;

    /// Applies a key: a character, Backspace, Delete, Delete line, Enter, an arrow, Home or End.
    /// False when the key is none of these and nothing has changed.
    bool applyKey(std::uint16_t code);

    void clear();

    /// One to three lines in the instrument's own codes.
    const std::vector<std::string>& lines() const { return m_lines; }
    /// The cursor, both from 0; the column may be one behind the last character.
    std::size_t cursorLine() const { return m_line; }
    std::size_t cursorColumn() const { return m_column; }

    /// Everything that was entered, the lines joined by spaces.
    std::string text() const;

private:
    bool applySpecialKey(std::uint16_t code);
    void insert(char code);
    void breakLine();
    void backspace();
    void erase();
    void deleteLine();
    void moveLeft();
    void moveRight();
    void moveToLine(std::size_t line);

    std::string& line() { return m_lines[m_line]; }

    std::vector<std::string> m_lines = {std::string()};
    std::size_t m_line = 0;
    std::size_t m_column = 0;
};
