// The table of small pictures, where a call costs more than its work on the pixels.
#pragma once

#include <span>

namespace ombrix::bench {

/// Calls on a picture of 256 x 256 pixels that stays in the caches, on 1 task and on 2.
void AddSmallPictureTable(std::span<const int> taskCounts);

}  // namespace ombrix::bench
