#include "InstrumentScreen.h"

#include "CharacterSet.h"
#include "Packet.h"

#include <algorithm>

namespace {

/// A run of cells within one row, cut to the screen.
struct Run {
    std::size_t cell = 0;    ///< index of the first cell
    std::size_t length = 0;  ///< cells that are on the screen
    std::size_t skipped = 0; ///< cells that lie left of it
};

Run clip(int column, int row, std::size_t length) {
    using Screen = InstrumentScreen;
    if (row < 1 || row > Screen::rows || column > Screen::columns)
        return {};
    const std::size_t skipped = column < 1 ? static_cast<std::size_t>(1 - column) : 0;
    if (skipped >= length)
        return {};
    const auto first = static_cast<std::size_t>(std::max(column, 1) - 1);
    const std::size_t room = Screen::columns - first;
    return {static_cast<std::size_t>(row - 1) * Screen::columns + first,
            std::min(length - skipped, room), skipped};
}

} // namespace

void InstrumentScreen::put(int column, int row, std::string_view utf8, Attribute attribute) {
    putCodes(column, row, charset::fromUtf8(utf8), attribute);
}

void InstrumentScreen::putCodes(int column, int row, std::string_view codes, Attribute attribute) {
    const Run run = clip(column, row, codes.size());
    m_text.replace(run.cell, run.length, codes.substr(run.skipped, run.length));
    m_attributes.replace(run.cell, run.length, run.length, static_cast<char>(attribute));
}

void InstrumentScreen::setAttribute(int column, int row, int width, Attribute attribute) {
    const Run run = clip(column, row, static_cast<std::size_t>(std::max(width, 0)));
    m_attributes.replace(run.cell, run.length, run.length, static_cast<char>(attribute));
}

void InstrumentScreen::setCursor(CursorShape shape, int column, int row) {
    m_cursor = {shape, static_cast<char>(std::clamp(column, 1, columns)),
                static_cast<char>(std::clamp(row, 1, rows))};
}

std::string InstrumentScreen::updatePacket() const {
    if (m_graphics)
        return packet::build("BNDL", packet::bundle("G", m_graphics->bytes()));
    const std::string cursor{static_cast<char>(m_cursor.shape), m_cursor.column, m_cursor.row};
    return packet::build("BNDL", packet::bundle("T", m_text) + packet::bundle("A", m_attributes) +
                                     packet::bundle("R", cursor));
}

std::string InstrumentScreen::rowText(int row) const {
    const Run run = clip(1, row, columns);
    return charset::toUtf8(std::string_view(m_text).substr(run.cell, run.length));
}
