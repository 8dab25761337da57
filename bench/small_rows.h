// The rows of small pictures, where the time goes that a call costs besides its row work.
#pragma once

#include <span>

namespace ombrix::bench {

/// Calls on a picture of 256 x 256 pixels that stays in the processor's caches; for 1 task and for 2.
void AddSmallRows(std::span<const int> taskCounts);

}  // namespace ombrix::bench
