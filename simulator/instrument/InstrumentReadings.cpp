#include "InstrumentReadings.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <numbers>

namespace {

constexpr double fullTurn = 2 * std::numbers::pi;
constexpr double meanLevel = -42.0;
constexpr double levelSwing = 6.0;
constexpr int samplesPerStep = 2;

} // namespace

InstrumentReadings::InstrumentReadings(std::uint32_t seed, std::chrono::milliseconds clock)
    : m_random(seed), m_clock(clock) {
    m_firstPhase = noise() * std::numbers::pi;
    m_secondPhase = noise() * std::numbers::pi;
    m_temperature += noise();
    m_highest = meanLevel - levelSwing;
    // Without a history the trace would crawl in from the edge for minutes.
    while (m_trace.size() < traceLength)
        takeSample();
    step(std::chrono::milliseconds(0));
}

double InstrumentReadings::noise() {
    // The distributions of the standard library differ from one to the next; this does not.
    constexpr double range = 0x1p24;
    return static_cast<double>(m_random() >> 8U) / range * 2 - 1;
}

void InstrumentReadings::takeSample() {
    const auto time = static_cast<double>(m_samples++);
    const double wave = 0.62 * std::sin(fullTurn * time / 61 + m_firstPhase) +
                        0.24 * std::sin(fullTurn * time / 17.3 + m_secondPhase) + 0.1 * noise();
    m_trace.push_back(std::clamp(wave, -1.0, 1.0));
    if (m_trace.size() > traceLength)
        m_trace.pop_front();
}

void InstrumentReadings::step(std::chrono::milliseconds elapsed) {
    m_clock += elapsed;
    for (int i = 0; i < samplesPerStep; ++i)
        takeSample();
    ++m_sweeps;
    m_level = meanLevel + levelSwing * m_trace.back();
    m_highest = std::max(m_highest, m_level);
    m_temperature += 0.02 * noise() + 0.01 * (startTemperature - m_temperature);
    m_offset = 12.5 + 0.8 * noise();
    m_phase = m_trace.back() / 2;
}

std::string InstrumentReadings::clockText() const {
    using namespace std::chrono;
    const auto whole = duration_cast<seconds>(m_clock) % hours(24);
    const hh_mm_ss time(whole);
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%02d:%02d:%02d",
                  static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
                  static_cast<int>(time.seconds().count()));
    return text.data();
}
