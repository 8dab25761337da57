// The table of the limits themselves.
#pragma once

#include <span>

namespace ombrix::bench {

/// For each traffic, at 32 bits and at 24, and for each number of tasks: what the forms of the loop reach.
void AddLimitTable(std::span<const int> taskCounts);

}  // namespace ombrix::bench
