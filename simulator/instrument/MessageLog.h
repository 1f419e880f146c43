#pragma once

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

/// The messages between an instrument and its operator, broken into lines for the screen.
class MessageLog {
public:
    /// Characters in a line.
    static constexpr std::size_t lineLength = 36;
    /// Lines that are kept; older ones go.
    static constexpr std::size_t capacity = 32;

    /// Adds a message: UTF-8 from outside, of any length. `mark` is the symbol in front of it.
    void add(std::string_view mark, std::string_view utf8);

    void clear() { m_lines.clear(); }

    /// The lines in the instrument's own codes, the latest last.
    const std::deque<std::string>& lines() const { return m_lines; }

private:
    std::deque<std::string> m_lines;
};
