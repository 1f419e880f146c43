#include "EntryPage.h"

#include "CharacterSet.h"
#include "InstrumentKeys.h"

namespace {
using CursorShape = InstrumentScreen::CursorShape;

constexpr int firstColumn = 3;
constexpr int firstRow = 3;
} // namespace

softkeys::Labels EntryPage::softKeyLabels() const {
    return {"CURSOR", "SEND", "◂ PREV", "NEXT ▶", "HOME"};
}

void EntryPage::draw(InstrumentScreen& screen) const {
    drawTitle(screen, m_name, "EDIT");
    screen.put(1, 2, "┌─ Note ───────────────────────────────┐");
    for (int row = firstRow; row < firstRow + static_cast<int>(EntryField::lineCount); ++row) {
        screen.put(1, row, "│");
        screen.put(InstrumentScreen::columns, row, "│");
    }
    screen.put(1, 6, "└──────────────────────────────────────┘");

    int row = firstRow;
    for (const std::string& line : m_field.lines())
        screen.putCodes(firstColumn, row++, line);
    const int column = static_cast<int>(m_field.cursorColumn());
    const int line = static_cast<int>(m_field.cursorLine());
    const std::string place = m_cursor == CursorShape::Block ? " block cursor " : " line cursor ";
    screen.put(4, 6, place);
    const std::string numbers = std::to_string(line + 1) + ":" + std::to_string(column + 1);
    screen.put(33, 6, " ");
    screen.put(34, 6, numbers + " ");
    screen.setCursor(m_cursor, firstColumn + column, firstRow + line);
}

InstrumentPage::KeyOutcome EntryPage::applyKey(std::uint16_t code) {
    using instrumentkey::Group;
    if (instrumentkey::groupOf(code) == Group::F1) {
        m_cursor = m_cursor == CursorShape::Block ? CursorShape::Underline : CursorShape::Block;
        return {true, {}};
    }
    if (instrumentkey::groupOf(code) == Group::F2) {
        KeyOutcome outcome{true, charset::toUtf8(m_field.text())};
        m_field.clear();
        return outcome;
    }
    if (code == instrumentkey::escape)
        return {};
    return {m_field.applyKey(code), {}};
}
