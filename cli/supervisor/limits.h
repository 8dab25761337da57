// How much time, memory and how many pixels the work may cost.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>

namespace ombrix::cli {

/// What the command line asks for; the rest goes by the machine and by the files that are read.
struct Limits {
    std::optional<double> seconds;       ///< of all the work
    std::optional<std::int64_t> memory;  ///< resident bytes
};

/// A file of 10 kB may cost 1 GB at most, and a larger one may hold a picture that its size makes likely. Never more
/// than three quarters of the memory of the machine or of its container.
std::int64_t MemoryLimit(const Limits& limits, std::int64_t bytesRead);

/// How much memory may be asked for, whether it is used or not. More, since threads, heaps and encoders reserve what
/// they never touch, and because libraries that are refused memory crash: it stops what grows faster than anyone looks.
std::int64_t DataLimit(const Limits& limits, std::int64_t bytesRead);

/// How long all the work may take when the command line says nothing. A file of 10 kB gets less than 5 seconds; more
/// bytes soon allow whatever an encoder may need.
std::chrono::duration<double> WorkTime(std::int64_t bytesRead);

/// How long decoders may work. Pixels that they have delivered give them more time, so only those that hang meet it. A
/// file of 10 kB gets less than 5 seconds before its first pixel.
std::chrono::duration<double> DecodingTime(std::int64_t bytesRead, std::int64_t pixelsDelivered);

/// How many pixels a file may have when the command line says nothing. Everything that is likely for honest files
/// passes: a row of one colour compresses to a 1000th as PNG, 8000 pixels a byte with one bit each.
std::int64_t PixelLimit(std::int64_t bytesOfFile);

}  // namespace ombrix::cli
