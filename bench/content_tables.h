// The tables that compare contents of pictures, since some formulas take longer for some colours.
#pragma once

namespace ombrix::bench {

/// Lumas in place and into a new picture, and the blend modes whose pace depends on the colours; on one task.
void AddContentTables();

}  // namespace ombrix::bench
