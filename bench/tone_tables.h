// The tables of the tone and colour effects.
#pragma once

#include <span>

namespace ombrix::bench {

/// In place, into a new picture and in place with a mask, for each number of tasks.
void AddToneTables(int bits, std::span<const int> taskCounts);

}  // namespace ombrix::bench
