// Writes that go past the caches.
#pragma once

#include <cstddef>
#include <cstdint>

namespace ombrix {

/// From how many bytes on a destination is written past the caches: it would not stay in them anyway, and a line that
/// is not written as a whole has to be read first, half as much traffic again. Set by tests alone.
extern std::int64_t gStreamedFromBytes;

/// As memcpy, past the caches where the processor can do that. StreamFence has to follow.
void StreamCopy(std::uint8_t* destination, const std::uint8_t* source, std::size_t bytes);

/// What was streamed is seen by other threads before what this one writes from now on.
void StreamFence();

}  // namespace ombrix
