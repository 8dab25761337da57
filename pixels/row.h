// What the loops are given and how they are called: all that passes between a level and the rest of the plug-in.
#pragma once

#include <cstdint>

#include "pixels/colour.h"

namespace ombrix {

/// Pixels of 3 or 4 bytes, side by side. Null: there is no such row.
struct PixelRow {
    const std::uint8_t* pixels = nullptr;
    std::int32_t bytesPerPixel = 4;
};

/// One row of a picture. Roles may share pixels. A 3-byte pixel is a 4-byte one without its fourth byte; the channels
/// after it move down by one.
struct Row {
    PixelRow source;
    PixelRow fill{};
    PixelRow mask{};
    std::uint8_t* destination = nullptr;  ///< of the source's depth; the source's own, in place
    std::int64_t count = 0;               ///< pixels; none when it is below 0
};

/// What is the same for all rows of a band.
struct RowSettings {
    const void* formula = nullptr;  ///< of the type that the loop was made for
    PixelFormat format{};
    bool isStreamed = false;  ///< the destination is written past the caches
    int sourceWeight = 0;     ///< of a mix by opacity, 0 to 256
    int fillWeight = 256;
};

/// Applies a formula to a row. Reads and writes no byte but those of the row's pixels.
using RowLoop = void (*)(const Row& row, const RowSettings& settings);

}  // namespace ombrix
