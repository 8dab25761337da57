// Pixels of all layouts from and to ARGB, a row or a piece of one at a time.
#pragma once

#include <cstddef>
#include <cstdint>

#include "ombrix/rows.h"

namespace ombrix::host {

/// What is done to ARGB pixels on their way.
enum class AlphaStep { Keep, Opaque, Unpremultiply, Premultiply };

/// The functions for this processor. Lengths are in pixels; buffers need no alignment, and are the same or apart.
struct RowFormats {
    void (*decode)(const std::uint8_t* pixels, Layout layout, std::size_t length, std::uint8_t* argb);
    void (*encode)(const std::uint8_t* argb, std::size_t length, Layout layout, std::uint8_t* pixels);
    void (*change)(std::uint8_t* argb, std::size_t length, AlphaStep step);
};

const RowFormats& RowFormatsHere();
/// Those for any processor of the family.
const RowFormats& PlainRowFormats();

}  // namespace ombrix::host
