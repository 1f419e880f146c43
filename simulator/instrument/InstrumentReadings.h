#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <random>
#include <string>

/// What an instrument measures: a level that wanders about, the readings beside it, a clock.
///
/// The same seed and the same steps give the same values, so that a run can be repeated.
class InstrumentReadings {
public:
    /// Samples that the trace holds, the latest last.
    static constexpr std::size_t traceLength = 208;

    /// `clock` is the time of day that the clock starts from.
    InstrumentReadings(std::uint32_t seed, std::chrono::milliseconds clock);

    /// Measures once more, `elapsed` after the last time.
    void step(std::chrono::milliseconds elapsed);

    double level() const { return m_level; }             ///< dBm
    double highestLevel() const { return m_highest; }    ///< dBm, since the start
    double temperature() const { return m_temperature; } ///< degrees Celsius
    double temperatureChange() const { return m_temperature - startTemperature; } ///< degrees
    double offset() const { return m_offset; }                                    ///< microvolts
    double phase() const { return m_phase; } ///< in pi radians, -1 to 1
    std::uint64_t sweeps() const { return m_sweeps; }

    /// Samples of the scrolling trace, each -1 to 1.
    const std::deque<double>& trace() const { return m_trace; }

    /// The time of day as "14:02:37".
    std::string clockText() const;

private:
    static constexpr double startTemperature = 23.0;

    void takeSample();
    double noise();

    std::mt19937 m_random;
    std::chrono::milliseconds m_clock;
    std::deque<double> m_trace;
    double m_firstPhase = 0;
    double m_secondPhase = 0;
    std::uint64_t m_samples = 0;
    std::uint64_t m_sweeps = 0;
    double m_level = 0;
    double m_highest = 0;
    double m_temperature = startTemperature;
    double m_offset = 0;
    double m_phase = 0;
};
