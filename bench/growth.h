// How the time for a pixel grows with the picture: it should not.
#pragma once

#include <ostream>
#include <string>

namespace ombrix::bench {

/// Measures a few operations and memcpy from 1 to 500 megapixels; writes a table to `out` and all numbers to a CSV
/// file. False when the file cannot be written. Takes 9 gigabytes of memory and a few minutes.
bool MeasureGrowth(const std::string& csvFile, std::ostream& out);

}  // namespace ombrix::bench
