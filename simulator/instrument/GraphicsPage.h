#pragma once

#include "InstrumentPage.h"
#include "InstrumentReadings.h"

/// The level as a trace that scrolls across the graphics screen.
class GraphicsPage : public InstrumentPage {
public:
    /// Both are the instrument's and outlive the page.
    GraphicsPage(const std::string& name, const InstrumentReadings& readings)
        : m_name(name), m_readings(readings) {}

    bool isLive() const override { return !m_held; }
    softkeys::Labels softKeyLabels() const override;
    void draw(InstrumentScreen& screen) const override;
    KeyOutcome applyKey(std::uint16_t code) override;

private:
    /// What is on the screen while it is held.
    struct Held {
        std::deque<double> trace;
        double level = 0;
    };

    void drawGrid(GraphicsBitmap& bitmap) const;
    void drawTrace(GraphicsBitmap& bitmap, const std::deque<double>& trace) const;

    const std::string& m_name;
    const InstrumentReadings& m_readings;
    std::optional<Held> m_held;
    bool m_zoomed = false;
};
