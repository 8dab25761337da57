// The table of whole calls, as users make them: through the embedded host, with the plug-in loaded from its file.
#pragma once

#include <span>

namespace ombrix::bench {

/// `Apply` of each tone and colour effect, for each number of tasks; the share is that of the work on the pixels alone.
/// Each result is released before the next call.
void AddWholeCallTable(std::span<const int> taskCounts);

}  // namespace ombrix::bench
