// The rows of the tone and colour effects.
#pragma once

#include <span>

namespace ombrix::bench {

/// In place, into a new picture and with a mask, at 32 bits per pixel, and in place at 24; for each number of tasks.
void AddToneRows(std::span<const int> taskCounts);

}  // namespace ombrix::bench
