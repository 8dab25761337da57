// How a picture looks, in numbers and in words: what the gallery goes by when it chooses what to show.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "host/host.h"

namespace ombrix::cli {

class Look {
  public:
    /// Of a 24- or 32-bit picture, on white where it is transparent.
    explicit Look(const host::Picture& picture);

    /// The mean difference of two pictures of the same size, a number from 0 to 255.
    double DistanceTo(const Look& other) const;
    /// How much of the other's variety of tones is left, in the channel that has lost most: 1 is all.
    double DetailOf(const Look& other) const;
    /// "darker, with less contrast" and the like, compared with the other.
    std::string ComparedWith(const Look& other) const;

  private:
    std::vector<std::uint8_t> bytes_;
    std::array<double, 3> mean_;    // of red, green, blue
    std::array<double, 3> spread_;  // their standard deviations
    double luma_ = 0;
    double contrast_ = 0;  // the standard deviation of the luma
    double colour_ = 0;    // the mean span from the least to the greatest channel
};

/// Which of the looks tell most: as different as can be from the original and from each other, at most `count` of them,
/// those in which little is left to see only when there is nothing else. Indices in ascending order; none when all look
/// like the original.
std::vector<std::size_t> MostTelling(const std::vector<Look>& looks, const Look& original, std::size_t count);

/// A mean difference below this does not meet the eye.
inline constexpr double kSameLook = 0.4;

}  // namespace ombrix::cli
