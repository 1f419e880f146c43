#include "KeysPage.h"

#include "InstrumentKeys.h"

namespace {
constexpr int firstRow = 2;
constexpr int lastRow = 5;
constexpr std::uint64_t numberLimit = 100000; // five figures fit the column
} // namespace

softkeys::Labels KeysPage::softKeyLabels() const {
    return {"CLEAR", "", "◂ PREV", "NEXT ▶", "HOME"};
}

void KeysPage::draw(InstrumentScreen& screen) const {
    drawTitle(screen, m_name, "KEYS");
    for (int row = firstRow; row <= lastRow; ++row)
        screen.put(1, row, "│       │        │                     │");
    screen.put(1, lastRow + 1, "└───────┴────────┴─────────────────────┘");
    int row = firstRow;
    for (auto key = m_log.keys().rbegin(); key != m_log.keys().rend() && row <= lastRow; ++key) {
        // The latest stands out at the top.
        const auto attribute = row == firstRow ? InstrumentScreen::Attribute::Highlight
                                               : InstrumentScreen::Attribute::Normal;
        std::string number = std::to_string(key->number % numberLimit);
        number.insert(0, 5 - number.size(), ' ');
        screen.put(3, row, number, attribute);
        screen.put(11, row, instrumentkey::hexOf(key->code), attribute);
        screen.put(20, row, instrumentkey::nameOf(key->code), attribute);
        ++row;
    }
}

InstrumentPage::KeyOutcome KeysPage::applyKey(std::uint16_t code) {
    using instrumentkey::Group;
    switch (instrumentkey::groupOf(code)) {
    case Group::F1:
        m_log.clear();
        return {true, {}};
    case Group::F3:
    case Group::F4:
    case Group::F5:
        return {};
    default:
        return {code != instrumentkey::escape, {}};
    }
}
