#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// Memory of payloads that are done with, for the payloads to come: a parser that hands out one
/// after the other need not ask for memory each time.
///
/// Holds not more than a burst of ordinary payloads needs, so that a few large ones are not
/// remembered for ever. One thread.
class PayloadPool {
public:
    /// The most memory that is kept, in pieces of at most maxSize bytes.
    static constexpr std::size_t maxCount = 32;
    static constexpr std::size_t maxSize = 64U << 10U;

    /// Takes over the memory of a payload that is done with, if it is worth it; leaves the string
    /// empty or as it is.
    void keep(std::string& payload);

    /// An empty string for a payload of `size` bytes.
    std::string take(std::size_t size);

private:
    std::vector<std::string> m_spares;
};
