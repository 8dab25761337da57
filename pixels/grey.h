// Greys of colours: weighted sums of red, green and blue.
#pragma once

#include <cstdint>

#include "pixels/colour.h"
#include "pixels/doubles.h"
#include "pixels/level.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// A grey is the sum of the channels by whole weights, divided and truncated. The luma of a standard is such a sum in
/// double precision, which falls just short of some of the sums that are whole: by Rec. 601, grey 128 has luma 127.
struct GreyWeights {
    Rgb<int> whole;  ///< below 32768
    int divisor;
    Rgb<double> inDoubles{};    ///< the same weights where double precision decides; else 0
    std::uint32_t fallen[8]{};  ///< a bit for each grey whose sum in doubles falls short of it

    constexpr bool AreInDoubles() const {
        return inDoubles.red != 0.0 || inDoubles.green != 0.0 || inDoubles.blue != 0.0;
    }

    /// The greys of colours.
    template <class V>
    constexpr V Of(Rgb<V> colour) const {
        if (!AreInDoubles()) {
            return (whole.red * colour.red + whole.green * colour.green + whole.blue * colour.blue) / divisor;
        }
        return ToInts((ToDoubles(colour.red) * inDoubles.red + ToDoubles(colour.green) * inDoubles.green) +
                      ToDoubles(colour.blue) * inDoubles.blue);
    }
};

/// Weights in double precision that have `divisor` for their common denominator.
constexpr GreyWeights LumaWeights(Rgb<double> weights, int divisor) {
    const auto whole = [divisor](double weight) { return (static_cast<int>(2 * weight * divisor) + 1) / 2; };
    GreyWeights luma{{whole(weights.red), whole(weights.green), whole(weights.blue)}, divisor, weights};
    // The loops divide sums in single precision.
    if (divisor > 16384) throw "weights have too many digits";
    for (int grey = 0; grey < 256; ++grey) {
        if (luma.Of(Rgb<int>{grey, grey, grey}) < grey) luma.fallen[grey / 32] |= 1u << grey % 32;
    }
    return luma;
}

constexpr GreyWeights kRec601 = LumaWeights({0.299, 0.587, 0.114}, 1000);
constexpr GreyWeights kRec709 = LumaWeights({0.2125, 0.7154, 0.0721}, 10000);

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
