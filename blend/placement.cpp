#include "blend/placement.h"

#include <algorithm>

namespace ombrix {
namespace {

/// No picture is larger than 2^31, so a fill that is shifted further than twice that covers as little as one that is
/// shifted by just that, and sums of such numbers stay far from the ends of 64 bits.
std::int64_t WithinReach(std::int64_t location) {
    constexpr std::int64_t kReach = std::int64_t{1} << 33;
    return std::clamp(location, -kReach, kReach);
}

std::int64_t Crop(std::int64_t size, std::int64_t full) { return size < 0 || size > full ? full : size; }

}  // namespace

CoveredRegion PlaceFill(std::int64_t x, std::int64_t y, Extent size, Extent fill, Extent source) {
    x = WithinReach(x);
    y = WithinReach(y);
    return {.left = std::max<std::int64_t>(x, 0),
            .top = std::max<std::int64_t>(y, 0),
            .right = std::min(source.width, x + Crop(size.width, fill.width)),
            .bottom = std::min(source.height, y + Crop(size.height, fill.height)),
            .clippedLeft = std::max<std::int64_t>(-x, 0),
            .originY = y};
}

}  // namespace ombrix
