// How the time for a pixel grows with the picture: it should not.
#pragma once

#include <ostream>
#include <string>

namespace ombrix::bench {

/// Measures a few works from 1 to 500 megapixels, and a copy beside them; writes a table to `out` and all numbers to a
/// CSV file. False when the file cannot be written. Needs 7 gigabytes of memory and a few minutes.
bool MeasureGrowth(const std::string& csvFile, std::ostream& out);

}  // namespace ombrix::bench
