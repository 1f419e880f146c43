#include "TextPage.h"

#include "InstrumentKeys.h"

#include <array>

namespace {

using Attribute = InstrumentScreen::Attribute;

struct Sample {
    int row;
    std::string_view text;
    Attribute attribute;
};

constexpr int attributeCount = 4;

constexpr std::array<Sample, attributeCount> samples{{
    {2, " Normal    ", Attribute::Normal},
    {3, " Inverse   ", Attribute::Inverse},
    {4, " Highlight ", Attribute::Highlight},
    {5, " Inv. high ", Attribute::InverseHighlight},
}};

} // namespace

softkeys::Labels TextPage::softKeyLabels() const {
    return {"ATTR", "", "◂ PREV", "NEXT ▶", "HOME"};
}

void TextPage::draw(InstrumentScreen& screen) const {
    drawTitle(screen, m_name, "TEXT");
    screen.put(1, 2, "┌───┬───┐ ╔═══╦═══╗            ◆ ◾ ▶ ◂ ↑");
    screen.put(1, 3, "├───┼─┐ │ ║12 ║34 ║            ↓ → ← ▲ ▼");
    screen.put(1, 4, "│   │ │ │ ╠═══╬═══╣            Δ π µ °  ");
    screen.put(1, 5, "│   │ │ │ ║56 ║78 ║            █ ▌ ▐ ▀ ▄");
    screen.put(1, 6, "└───┴─┴─┘ ╚═══╩═══╝ à é ñ ö ü £ § ½ ± ·");
    for (const Sample& sample : samples) {
        const int turned = (static_cast<int>(sample.attribute) + m_rotation) % attributeCount;
        screen.put(20, sample.row, sample.text, static_cast<Attribute>(turned));
    }
}

InstrumentPage::KeyOutcome TextPage::applyKey(std::uint16_t code) {
    if (instrumentkey::groupOf(code) != instrumentkey::Group::F1)
        return {};
    m_rotation = (m_rotation + 1) % attributeCount;
    return {true, {}};
}
