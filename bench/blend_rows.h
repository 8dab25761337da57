// The rows of the blend modes.
#pragma once

#include <span>

namespace ombrix::bench {

/// Into a third picture, with all of the fill's opacity and without a mask, and with both; for each number of tasks.
void AddBlendRows(std::span<const int> taskCounts);

}  // namespace ombrix::bench
