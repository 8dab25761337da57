// The formula of the contrast effect.
#pragma once

#include "pixels/formula.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Multiplies a channel's distance from 128 by a factor, by a line in whole numbers that gives the same for every byte
/// (effects/contrast_line.h).
struct ContrastStretch : ByChannel {
    int multiplier;
    int up;
    int down;
    int bits;

    constexpr ContrastStretch(int multiplier, int up, int down, int bits)
        : multiplier(multiplier), up(up), down(down), bits(bits) {}

    template <class V>
    V operator()(V s) const {
        const V product = HighProduct(s << 8, Same<V>(multiplier));
        const V line = DifferenceFromZero(product + Same<V>(up), Same<V>(down));
        return HighProduct(Min(line, (256 << bits) - 1), Same<V>(0x10000 >> bits));  // shifted by `bits`
    }
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
