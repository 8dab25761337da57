// The yardstick: how fast this machine copies memory.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ombrix::bench {

/// Copies `bytes` with memcpy: for 1 task on the calling thread, for more (up to 8) in as many parts at once, on tasks
/// of the platform, so that handing over costs what it costs an effect.
void Copy(std::uint8_t* target, const std::uint8_t* source, std::size_t bytes, int tasks);

}  // namespace ombrix::bench
