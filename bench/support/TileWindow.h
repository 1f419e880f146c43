#pragma once

#include "Display.h"
#include "Home.h"
#include "Instruments.h"
#include "Process.h"

/// The program's window with tiles, on a display, and the instruments that they mirror.
class TileWindow {
public:
    /// Returns once all are connected and at rest.
    TileWindow(const Display& display, const Home& home, int tiles);

    Instruments& instruments() { return m_instruments; }
    const Process& process() const { return m_process; }
    /// The size of a tile's screen, as "240 x 120".
    const std::string& screenSize() const { return m_screenSize; }

    /// Types a key, and the seconds until its instrument's answer can be seen.
    double keyToScreen() const;
    /// Types a key, and the seconds until it has reached its instrument.
    double keyToWire() const;

private:
    const Display& m_display;
    Instruments m_instruments;
    Process m_process;
    std::string m_screenSize;
    int m_x = 0;
    int m_y = 0;
};
