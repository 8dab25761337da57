#pragma once

#include <cstddef>

namespace ombrix::bench {

/// Bytes that caches hold together; pictures begin at a multiple of it.
inline constexpr std::size_t kCacheLine = 64;

}  // namespace ombrix::bench
