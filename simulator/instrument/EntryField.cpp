#include "EntryField.h"

#include "InstrumentKeys.h"

#include <algorithm>

bool EntryField::applyKey(std::uint16_t code) {
    switch (code) {
    case instrumentkey::backspace:
        backspace();
        return true;
    case instrumentkey::enter:
    case instrumentkey::newline:
        breakLine();
        return true;
    case instrumentkey::erase:
        erase();
        return true;
    default:
        break;
    }
    if (code >= 0x100)
        return applySpecialKey(code);
    if (code < ' ')
        return false;
    insert(static_cast<char>(code));
    return true;
}

bool EntryField::applySpecialKey(std::uint16_t code) {
    using instrumentkey::Group;
    switch (instrumentkey::groupOf(code)) {
    case Group::DeleteLine:
        deleteLine();
        return true;
    case Group::Enter:
        breakLine();
        return true;
    case Group::Home:
        m_column = 0;
        return true;
    case Group::End:
        m_column = line().size();
        return true;
    case Group::Left:
        moveLeft();
        return true;
    case Group::Right:
        moveRight();
        return true;
    case Group::Up:
        moveToLine(m_line == 0 ? 0 : m_line - 1);
        return true;
    case Group::Down:
        moveToLine(std::min(m_line + 1, m_lines.size() - 1));
        return true;
    default:
        return false;
    }
}

void EntryField::clear() {
    *this = EntryField();
}

std::string EntryField::text() const {
    std::string all;
    for (const std::string& one : m_lines) {
        if (!all.empty() && !one.empty())
            all += ' ';
        all += one;
    }
    return all;
}

void EntryField::insert(char code) {
    if (m_column == lineLength)
        breakLine();
    // A full line takes no more in its middle: pushing its end out would lose text unseen.
    if (line().size() == lineLength)
        return;
    line().insert(m_column, 1, code);
    ++m_column;
}

void EntryField::breakLine() {
    const std::string tail = line().substr(m_column);
    line().resize(m_column);
    m_lines.insert(m_lines.begin() + static_cast<std::ptrdiff_t>(m_line) + 1, tail);
    ++m_line;
    m_column = 0;
    if (m_lines.size() > lineCount) {
        m_lines.erase(m_lines.begin());
        --m_line;
    }
}

void EntryField::backspace() {
    if (m_column > 0) {
        line().erase(--m_column, 1);
        return;
    }
    if (m_line == 0)
        return;
    moveLeft();
    if (line().size() + m_lines[m_line + 1].size() > lineLength)
        return;
    line() += m_lines[m_line + 1];
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(m_line) + 1);
}

void EntryField::erase() {
    if (m_column < line().size())
        line().erase(m_column, 1);
}

void EntryField::deleteLine() {
    m_column = 0;
    if (m_lines.size() == 1) {
        line().clear();
        return;
    }
    m_lines.erase(m_lines.begin() + static_cast<std::ptrdiff_t>(m_line));
    m_line = std::min(m_line, m_lines.size() - 1);
}

void EntryField::moveLeft() {
    if (m_column > 0) {
        --m_column;
    } else if (m_line > 0) {
        --m_line;
        m_column = line().size();
    }
}

void EntryField::moveRight() {
    if (m_column < line().size()) {
        ++m_column;
    } else if (m_line + 1 < m_lines.size()) {
        ++m_line;
        m_column = 0;
    }
}

void EntryField::moveToLine(std::size_t wanted) {
    m_line = wanted;
    m_column = std::min(m_column, line().size());
}
