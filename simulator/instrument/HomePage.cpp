#include "HomePage.h"

#include "BigDigits.h"
#include "NumberText.h"

namespace {
constexpr double highLevel = -38.0; // dBm
} // namespace

softkeys::Labels HomePage::softKeyLabels() const {
    return {"TEXT", "EDIT", "PLOT", "KEYS", "CHAT"};
}

void HomePage::draw(InstrumentScreen& screen) const {
    using enum InstrumentScreen::Attribute;
    using numbertext::fixed;
    using numbertext::Sign;
    drawTitle(screen, m_name, m_readings.clockText());

    screen.put(1, 2, "╔═ LEVEL ═══════════════╦═ SENSOR ═════╗");
    screen.put(1, 3, "║                       ║ T         °C ║");
    screen.put(1, 4, "║                       ║ ΔT        °C ║");
    screen.put(1, 5, "║                       ║ U         µV ║");
    screen.put(1, 6, "╚═══════════════════════╩══════════════╝");

    bigdigits::draw(screen, 3, 3, fixed(m_readings.level(), 1, 5));
    screen.put(21, 5, "dBm");
    if (m_readings.level() > highLevel)
        screen.put(21, 3, "▲HI", InverseHighlight);
    screen.put(3, 6, " max       dBm ");
    screen.put(8, 6, fixed(m_readings.highestLevel(), 1, 5));

    screen.put(30, 3, fixed(m_readings.temperature(), 2, 6));
    screen.put(30, 4, fixed(m_readings.temperatureChange(), 2, 6, Sign::Always));
    screen.put(30, 5, fixed(m_readings.offset(), 1, 6, Sign::Always));
    screen.put(27, 6, "       π ");
    screen.put(28, 6, fixed(m_readings.phase(), 2, 5, Sign::Always));
    screen.put(36, 6, " ◆ ", Highlight);
}
