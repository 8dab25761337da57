// What a picture looks like, in numbers and words.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "ombrix/host.h"

namespace ombrix::cli {

class Look {
  public:
    /// A picture of 24 or 32 bits, on white where it is transparent.
    explicit Look(const host::Picture& picture);

    /// Mean difference, 0 to 255, to a picture of the same size.
    double DistanceTo(const Look& other) const;
    /// How much of the other's range of tones is left, in the channel that lost most: 1 is all.
    double DetailOf(const Look& other) const;
    /// For example "darker and with less contrast".
    std::string ComparedWith(const Look& other) const;

  private:
    std::vector<std::uint8_t> bytes_;
    std::array<double, 3> mean_;    // of red, green, blue
    std::array<double, 3> spread_;  // standard deviations
    double luma_ = 0;
    double contrast_ = 0;  // standard deviation of the luma
    double colour_ = 0;    // mean distance of the least channel from the greatest
};

/// At most `count` looks that differ most from the original and each other, as ascending indices. Those that have lost
/// most of their detail come last. None when all look like the original.
std::vector<std::size_t> MostTelling(const std::vector<Look>& looks, const Look& original, std::size_t count);

/// A smaller mean difference is not seen.
inline constexpr double kSameLook = 0.4;

}  // namespace ombrix::cli
