// The terminal that texts are laid out for.
#pragma once

#include <cstddef>

namespace ombrix::cli {

/// Characters in a line of what the descriptor writes to: the terminal's, or else what COLUMNS says, or 80. From 60 to
/// 120, since other lines are hard to read. What it is at first, it stays: a worker's standard output is a pipe.
std::size_t LineWidth(int descriptor);

}  // namespace ombrix::cli
