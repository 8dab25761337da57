// Files whose end is missing, which their readers do not notice.
#pragma once

#include <filesystem>
#include <vips/vips8>

namespace ombrix::cli {

/// Whether a file of one of those kinds (PDF, PNM of plain numbers, SGI, MATLAB) is shorter than it says. `image` is
/// what was opened.
bool IsCutShort(const std::filesystem::path& file, const vips::VImage& image);

}  // namespace ombrix::cli
