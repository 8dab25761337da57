// Where a fill lands on a source.
#pragma once

#include <cstdint>

namespace ombrix {

/// A size in pixels.
struct Extent {
    std::int64_t width;
    std::int64_t height;
};

/// The part of the destination that a fill covers.
struct CoveredRegion {
    std::int64_t left;         ///< first column
    std::int64_t top;          ///< first row
    std::int64_t right;        ///< column after the last
    std::int64_t bottom;       ///< row after the last
    std::int64_t clippedLeft;  ///< columns of the fill that lie left of the destination
    std::int64_t originY;      ///< destination row of the fill's row 0

    bool Empty() const { return left >= right || top >= bottom; }
};

/// The region covered by the top left `size` of a fill whose corner lies at (`x`, `y`) of a source. A size that is
/// negative, or larger than the fill, is the fill's. Any 64-bit values do: what lies outside covers nothing.
CoveredRegion PlaceFill(std::int64_t x, std::int64_t y, Extent size, Extent fill, Extent source);

}  // namespace ombrix
