// Draws pixels onto pixels: clipped, scaled, converted between depths, mixed through a mask.
#pragma once

#include <cstdint>

#include "host/pixel_buffer.h"

namespace ombrix::host {

/// Where a picture is drawn and which part of it, in pixels. Any numbers will do: what lies outside either picture is
/// not drawn. A negative source size means the picture's own, a negative target size the source's.
struct Placement {
    std::int64_t x, y;
    std::int64_t targetWidth, targetHeight;
    std::int64_t sourceX, sourceY;
    std::int64_t sourceWidth, sourceHeight;
};

/// Draws `source` onto `target`; they must not share memory. A source without alpha is opaque. Pixel i of a scaled side
/// shows pixel floor(i * sourceSize / targetSize) of the source.
///
/// A mask has the source's size. It turns each channel into (source * (255 - m) + target * m + 127) / 255, where m is
/// the mask's value of that channel: white keeps the target. For the alpha of a 32-bit target, m is the mean of the
/// mask's three.
void Draw(const PixelView& target, const PixelView& source, const PixelView* mask, const Placement& placement);

}  // namespace ombrix::host
