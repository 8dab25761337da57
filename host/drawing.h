// Draws pixels onto pixels: clipped, scaled, converted between depths, mixed through a mask.
#pragma once

#include <cstdint>

#include "host/pixel_buffer.h"

namespace ombrix::host {

/// Where a picture is drawn, and what of it, in pixels. Any values are allowed: what lies outside a picture is left
/// out. A negative size of the source is the picture's own, a negative size of the target is the source's.
struct Placement {
    std::int64_t x, y;
    std::int64_t targetWidth, targetHeight;
    std::int64_t sourceX, sourceY;
    std::int64_t sourceWidth, sourceHeight;
};

/// Draws `source` onto `target`, which must not share memory. Pixel i of a scaled side shows the source's pixel
/// floor(i * source size / target size).
///
/// With a mask (of the source's size, or none), each channel is (source * (255 - m) + target * m + 127) / 255, m
/// being the mask's value of that channel: white lets the target through. A 32-bit target's alpha is mixed by the
/// mean of the three. Without an alpha of its own a source is opaque.
void Draw(const PixelView& target, const PixelView& source, const PixelView* mask, const Placement& placement);

}  // namespace ombrix::host
