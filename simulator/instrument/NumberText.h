#pragma once

#include <array>
#include <cmath>
#include <cstdio>
#include <string>

/// Numbers as an instrument shows them.
namespace numbertext {

enum class Sign { WhenNegative, Always };

/// `value` with so many decimals, in a field of at least `width` characters, flush right. Never
/// "-0.0": what rounds to zero has no minus.
inline std::string fixed(double value, int decimals, int width, Sign sign = Sign::WhenNegative) {
    const double unit = std::pow(10.0, -decimals);
    if (std::abs(value) < unit / 2)
        value = 0;
    std::array<char, 64> text{};
    std::snprintf(text.data(), text.size(), sign == Sign::Always ? "%+*.*f" : "%*.*f", width,
                  decimals, value);
    return text.data();
}

} // namespace numbertext
