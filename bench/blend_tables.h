// The tables of the blend modes.
#pragma once

#include <span>

namespace ombrix::bench {

/// With full opacity and without a mask, then with both, for each number of tasks. At 24 bits one mode of each kind is
/// measured.
void AddBlendTables(int bits, std::span<const int> taskCounts);

}  // namespace ombrix::bench
