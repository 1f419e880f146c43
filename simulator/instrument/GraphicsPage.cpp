#include "GraphicsPage.h"

#include "InstrumentKeys.h"
#include "NumberText.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr int plotLeft = 28;
constexpr int plotRight = plotLeft + static_cast<int>(InstrumentReadings::traceLength) - 1;
constexpr int plotTop = 11;
constexpr int plotMiddle = 29;
constexpr int plotBottom = 47;
constexpr int gridStep = 26;
constexpr int titleBottom = 8;

} // namespace

softkeys::Labels GraphicsPage::softKeyLabels() const {
    return {m_held ? "RUN" : "HOLD", m_zoomed ? "ZOOM-" : "ZOOM+", "◂ PREV", "NEXT ▶", "HOME"};
}

void GraphicsPage::draw(InstrumentScreen& screen) const {
    using Ink = GraphicsBitmap::Ink;
    const double level = m_held ? m_held->level : m_readings.level();
    const std::string note = numbertext::fixed(level, 1, 5) + " DBM";
    const auto noteWidth = static_cast<int>(note.size()) * 6;
    GraphicsBitmap bitmap;
    bitmap.fill(0, 0, GraphicsBitmap::width - 1, titleBottom);
    bitmap.text(3, 1, m_name, Ink::Clear);
    bitmap.fill(GraphicsBitmap::width - noteWidth - 8, 0, GraphicsBitmap::width - 1, titleBottom);
    bitmap.text(GraphicsBitmap::width - noteWidth - 2, 1, note, Ink::Clear);
    drawGrid(bitmap);
    drawTrace(bitmap, m_held ? m_held->trace : m_readings.trace());
    softkeys::draw(bitmap, softKeyLabels());
    screen.showGraphics(std::move(bitmap));
}

void GraphicsPage::drawGrid(GraphicsBitmap& bitmap) const {
    bitmap.fill(plotLeft - 1, plotTop, plotLeft - 1, plotBottom);
    bitmap.fill(plotLeft - 1, plotBottom, plotRight, plotBottom);
    for (const int y : {plotTop, plotMiddle, plotBottom})
        bitmap.fill(plotLeft - 3, y, plotLeft - 1, y);
    for (const int y : {plotTop, plotMiddle}) {
        for (int x = plotLeft + 1; x <= plotRight; x += 4)
            bitmap.plot(x, y);
    }
    for (int x = plotLeft + gridStep - 1; x <= plotRight; x += gridStep) {
        for (int y = plotTop; y < plotBottom; y += 4)
            bitmap.plot(x, y);
        bitmap.fill(x, plotBottom, x, plotBottom + 1);
    }
    const int top = m_zoomed ? -39 : -36;
    const int bottom = m_zoomed ? -45 : -48;
    bitmap.text(4, plotTop - 1, std::to_string(top));
    bitmap.text(4, plotMiddle - 3, std::to_string((top + bottom) / 2));
    bitmap.text(4, plotBottom - 6, std::to_string(bottom));
}

void GraphicsPage::drawTrace(GraphicsBitmap& bitmap, const std::deque<double>& trace) const {
    const double scale = (plotBottom - plotMiddle - 1) * (m_zoomed ? 2.0 : 1.0);
    const auto rowOf = [scale](double sample) {
        const int y = plotMiddle - static_cast<int>(std::lround(sample * scale));
        return std::clamp(y, plotTop, plotBottom - 1);
    };
    int x = plotLeft;
    int before = trace.empty() ? plotMiddle : rowOf(trace.front());
    for (const double sample : trace) {
        const int y = rowOf(sample);
        // Each column reaches to its neighbour's row, so that a steep trace has no gaps.
        const int reach = y > before ? before + 1 : y < before ? before - 1 : y;
        bitmap.vertical(x++, reach, y);
        before = y;
    }
}

InstrumentPage::KeyOutcome GraphicsPage::applyKey(std::uint16_t code) {
    using instrumentkey::Group;
    switch (instrumentkey::groupOf(code)) {
    case Group::F1:
        if (m_held)
            m_held.reset();
        else
            m_held = Held{m_readings.trace(), m_readings.level()};
        return {true, {}};
    case Group::F2:
        m_zoomed = !m_zoomed;
        return {true, {}};
    default:
        return {};
    }
}
