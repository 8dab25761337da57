// What the pictures show: the same in every run.
#pragma once

#include <cstdint>

#include "bench/bench_picture.h"

namespace ombrix::bench {

enum class Content {
    Photo,       ///< a gradient of colours with noise on it
    Noise,       ///< random colours
    Greys,       ///< random greys
    WhitePaper,  ///< white with lines of dark strokes, like text
    OneColour,   ///< no grey, but a luma (Rec. 601) that is a whole number, where it is hardest to round right
};
inline constexpr Content kContents[] = {Content::Photo, Content::Noise, Content::Greys, Content::WhitePaper,
                                        Content::OneColour};

/// "white paper"
const char* NameOf(Content content);

/// Paints an opaque picture. Another `seed` gives another picture.
void Paint(BenchPicture& picture, Content content, std::uint32_t seed);

/// Random greys, with squares of black.
void PaintMask(BenchPicture& mask);

}  // namespace ombrix::bench
