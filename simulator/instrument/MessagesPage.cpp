#include "MessagesPage.h"

#include "InstrumentKeys.h"

#include <algorithm>

namespace {
constexpr int firstRow = 2;
constexpr std::size_t visibleLines = 4;
} // namespace

softkeys::Labels MessagesPage::softKeyLabels() const {
    return {"CLEAR", "CALL", "◂ PREV", "NEXT ▶", "HOME"};
}

void MessagesPage::draw(InstrumentScreen& screen) const {
    drawTitle(screen, m_name, "CHAT");
    const auto& lines = m_log.lines();
    const std::size_t first = lines.size() - std::min(lines.size(), visibleLines);
    int row = firstRow;
    for (std::size_t i = 0; i < visibleLines; ++i) {
        screen.put(1, row, "│                                      │");
        if (first + i < lines.size())
            screen.putCodes(3, row, lines[first + i]);
        ++row;
    }
    screen.put(1, row, "└──────────────────────────────────────┘");
}

InstrumentPage::KeyOutcome MessagesPage::applyKey(std::uint16_t code) {
    using instrumentkey::Group;
    switch (instrumentkey::groupOf(code)) {
    case Group::F1:
        m_log.clear();
        return {true, {}};
    case Group::F2:
        return {true, "Operator, please call"};
    default:
        return {};
    }
}
