#pragma once

#include "LineFaults.h"

#include <cstdint>
#include <random>
#include <string>
#include <string_view>

/// What a bad line does to the bytes of one direction. The same seed and the same bytes always meet
/// the same fate, however they are cut into pieces.
class LineNoise {
public:
    LineNoise(const LineFaults& faults, std::uint32_t seed) : m_faults(faults), m_random(seed) {}

    /// What comes out at the other end for these bytes.
    std::string pass(std::string_view bytes);

    /// How long the line was held up at the bytes that were passed since the last call.
    std::chrono::milliseconds takeStall();

private:
    bool happens(double rate);

    LineFaults m_faults;
    std::mt19937 m_random;
    std::chrono::milliseconds m_stall{0};
};
