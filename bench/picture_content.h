// What stands in the pictures: content like that of photographs, the same in every run.
#pragma once

#include <cstdint>

#include "bench/bench_picture.h"

namespace ombrix::bench {

/// A gradient of colours with noise on it, opaque. Another `seed` gives another picture.
void PaintPhoto(BenchPicture& picture, std::uint32_t seed);

/// Greys at random, with squares of black.
void PaintMask(BenchPicture& mask);

}  // namespace ombrix::bench
