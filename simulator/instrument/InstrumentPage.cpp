#include "InstrumentPage.h"

#include "CharacterSet.h"

#include <algorithm>

InstrumentPage::KeyOutcome InstrumentPage::applyKey(std::uint16_t) {
    return {};
}

void InstrumentPage::drawTitle(InstrumentScreen& screen, std::string_view name,
                               std::string_view note) {
    constexpr int width = InstrumentScreen::columns;
    const std::string right = charset::fromUtf8(note);
    // A long name gives way to the note, with one space between them.
    const auto room = static_cast<std::size_t>(width) - 5 - right.size();
    const std::string left = charset::fromUtf8(name).substr(0, room);
    screen.put(2, 1, "◆");
    screen.putCodes(4, 1, left);
    screen.putCodes(width - static_cast<int>(right.size()), 1, right);
    screen.setAttribute(1, 1, width, InstrumentScreen::Attribute::Inverse);
}
