// The rows of whole calls, as users make them: through the embedded host, of the plug-in loaded from its file.
#pragma once

#include <span>

namespace ombrix::bench {

/// `Apply` of each tone and colour effect into a new picture that is released before the next call; for each number of
/// tasks. The ratio is to the row work alone.
void AddHostRows(std::span<const int> taskCounts);

}  // namespace ombrix::bench
