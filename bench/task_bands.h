// Work on bytes in bands, one for each task. The tasks are the platform's: starting them costs what it costs an effect.
#pragma once

#include <cstddef>
#include <functional>

namespace ombrix::bench {

/// Bytes from `first` up to, not including, `end`.
struct Band {
    std::size_t first;
    std::size_t end;
};

/// Calls `run` for as many bands of `count` bytes as there are tasks (1 to 8), all at once; for one task, on the
/// calling thread. All bands begin at a multiple of kCacheLine.
void RunInBands(std::size_t count, int tasks, const std::function<void(Band band)>& run);

}  // namespace ombrix::bench
