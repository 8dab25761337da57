// TIFF files whose end is missing.
#pragma once

#include "cli/images/file_bytes.h"

namespace ombrix::cli {

/// Whether every page's directory and pixels lie in the file. Readers notice it of the pages that they decode alone,
/// and count no further pages where the chain of directories breaks off.
bool HasAllPages(FileBytes& file);

}  // namespace ombrix::cli
