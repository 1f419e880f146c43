#include "TileWindow.h"

#include "ScreenFeed.h"

#include <sstream>
#include <stdexcept>

namespace {

constexpr double settleSeconds = 1.5;
constexpr double glance = 50e-6;
constexpr double patience = 60;

/// As many columns as an operator would choose, or fit on the display.
int columnsFor(int tiles) {
    constexpr int few = 4;
    constexpr int many = 16;
    return tiles < few ? tiles : tiles < many * few ? few : many;
}

} // namespace

TileWindow::TileWindow(const Display& display, const Home& home, int tiles)
    : m_display(display), m_process({GX_WINDOW, std::to_string(m_instruments.port()),
                                     std::to_string(tiles), std::to_string(columnsFor(tiles))},
                                    home.environment(display)) {
    std::string word;
    std::uint32_t window = 0;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    std::istringstream(m_process.readLine()) >> word >> window >> left >> top >> width >> height;
    if (word != "window")
        throw std::runtime_error("no window with tiles");
    m_screenSize = std::to_string(width) + " x " + std::to_string(height);
    m_x = left + static_cast<int>(width * screenfeed::markX);
    m_y = top + static_cast<int>(height * screenfeed::markY);
    m_display.focus(window);
    pauseFor(settleSeconds);
}

double TileWindow::keyToScreen() const {
    const std::uint32_t before = m_display.pixel(m_x, m_y);
    const double pressed = m_display.pressKey();
    return m_display.waitForChange(m_x, m_y, before) - pressed;
}

double TileWindow::keyToWire() const {
    const int before = m_instruments.keys();
    const double pressed = m_display.pressKey();
    while (m_instruments.keys() == before && now() - pressed < patience)
        pauseFor(glance);
    return m_instruments.lastKey() - pressed;
}
