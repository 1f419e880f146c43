#pragma once

#include "InstrumentPage.h"
#include "InstrumentReadings.h"

/// What the instrument measures, and the menu of its other pages.
class HomePage : public InstrumentPage {
public:
    /// Both are the instrument's and outlive the page.
    HomePage(const std::string& name, const InstrumentReadings& readings)
        : m_name(name), m_readings(readings) {}

    bool isLive() const override { return true; }
    softkeys::Labels softKeyLabels() const override;
    void draw(InstrumentScreen& screen) const override;

private:
    const std::string& m_name;
    const InstrumentReadings& m_readings;
};
