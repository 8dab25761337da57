// Luma, the grey of a colour as a weighted sum of its channels.
#pragma once

#include <cstdint>

#include "engine/pixel.h"

namespace ombrix {

/// Weights of red, green and blue, 1.0 together.
struct LumaWeights {
    double red;
    double green;
    double blue;

    /// Truncated. In double precision a sum can fall just short of a whole number: with the weights of Rec. 601, grey
    /// 128 has luma 127.
    int LumaOf(Rgb<int> colour) const {
        return static_cast<int>((colour.red * red + colour.green * green) + colour.blue * blue);
    }
};

constexpr LumaWeights kRec601{0.299, 0.587, 0.114};
constexpr LumaWeights kRec709{0.2125, 0.7154, 0.0721};

/// The same sum in whole numbers, for colours whose sum is not so near to a whole number that the rounding of the
/// double-precision sum decides: at most one in a thousand, but every grey. A quarter faster, since half as many
/// doubles as words fit into a vector.
class WholeLuma {
  public:
    explicit constexpr WholeLuma(const LumaWeights& weights)
        : red_(Rounded(weights.red)), green_(Rounded(weights.green)), blue_(Rounded(weights.blue)) {}

    /// In units of 2^-24, with the margin added.
    std::uint32_t SumOf(Rgb<int> colour) const {
        return red_ * static_cast<std::uint32_t>(colour.red) + green_ * static_cast<std::uint32_t>(colour.green) +
               blue_ * static_cast<std::uint32_t>(colour.blue) + kMargin;
    }
    /// Of several sums, the least tells whether one is near a whole number.
    static constexpr std::uint32_t AboveWhole(std::uint32_t sum) { return sum & (kOne - 1); }
    static constexpr bool IsNearWhole(std::uint32_t aboveWhole) { return aboveWhole < 2 * kMargin; }
    static constexpr int LumaOf(std::uint32_t sum) { return static_cast<int>(sum / kOne); }

  private:
    static constexpr std::uint32_t kOne = 1u << 24;
    /// More than the rounded weights can be wrong by, 1.5 times 255 units; the double's own error is far below a unit.
    static constexpr std::uint32_t kMargin = 400;
    static constexpr std::uint32_t Rounded(double weight) {
        return (static_cast<std::uint32_t>(weight * (2.0 * kOne)) + 1) / 2;
    }

    std::uint32_t red_;
    std::uint32_t green_;
    std::uint32_t blue_;
};

}  // namespace ombrix
