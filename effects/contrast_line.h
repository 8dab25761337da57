// The contrast effect in double precision, which is its definition, and the search for the same in whole numbers.
#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "effects/contrast_stretch.h"

namespace ombrix {

constexpr int kMostContrast = 100;  // and -100 at the other end

/// The factor of a contrast value: 0.0 (all grey) to 4.0. It grows with the square of the value, so that steps look
/// alike over the whole range.
constexpr double ContrastFactor(std::int64_t value) {
    const double root = (static_cast<double>(value) + 100.0) / 100.0;
    return root * root;
}

/// Multiplies a channel's distance from 128 by the factor, in double precision. The result saturates at 0 and 255 and
/// is cut, not rounded: at a factor of 1.0201 the value 127 becomes 126 and 129 stays.
constexpr int Stretched(int source, double factor) {
    const double stretched = (source - 128) * factor + 128.0;
    return static_cast<int>(std::min(std::max(stretched, 0.0), 255.0));
}

/// Finds the line for a factor by trying multipliers near the exact one; does not compile if none fits. A line takes a
/// third of the time of doubles.
constexpr ContrastStretch FindContrastLine(double factor) {
    const int fraction = factor <= 1.0 ? 16 : factor <= 2.0 ? 15 : 14;  // as many bits as the multiplier has room for
    const int bits = fraction - 8;
    const int obvious = (static_cast<int>(factor * (2 << fraction)) + 1) / 2;  // the nearest whole number
    for (const int step : {0, -1, 1, -2, 2, -3, 3}) {
        const int multiplier = obvious + step;
        if (multiplier < 0 || multiplier > 0xffff) continue;
        // The offsets for which no byte comes out too low, and those for which none comes out too high.
        int lowest = -0xffff;
        int highest = 0xffff;
        for (int source = 0; source < 256; ++source) {
            const int product = source * multiplier >> 8;
            const int wanted = Stretched(source, factor);
            if (wanted > 0) lowest = std::max(lowest, (wanted << bits) - product);
            if (wanted < 255) highest = std::min(highest, ((wanted + 1) << bits) - 1 - product);
        }
        if (lowest <= highest) return {multiplier, std::max(lowest, 0), std::max(-lowest, 0), bits};
    }
    throw "there is no line for this factor";
}

template <int value>
constexpr ContrastStretch kContrastLine = FindContrastLine(ContrastFactor(value));

/// Those of all values, from -100 on.
constexpr auto kContrastLines = []<int... index>(std::integer_sequence<int, index...>) {
    return std::array{kContrastLine<index - kMostContrast>...};
}
(std::make_integer_sequence<int, 2 * kMostContrast + 1>());

}  // namespace ombrix
