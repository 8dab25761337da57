// Files whose end is missing, which their readers do not notice.
#pragma once

#include <filesystem>
#include <vips/vips8>

namespace ombrix::cli {

/// Whether a file of one of those kinds (PNG, GIF, WebP, TIFF, PDF, PNM of plain numbers, libvips' own, SGI, MATLAB) is
/// shorter than it says. `image` is what was opened of it.
bool IsCutShort(const std::filesystem::path& file, const vips::VImage& image);

}  // namespace ombrix::cli
