// From any image to 8-bit sRGB.
#pragma once

#include <filesystem>
#include <string>
#include <vips/vips8>

#include "cli/console.h"

namespace ombrix::cli {

/// "16 bits a channel", "floating-point channels"; empty for 8 bits or less.
std::string DepthAbove8Bits(const vips::VImage& image);

/// Red, green, blue and perhaps alpha (not premultiplied), 8 bits each. Follows an embedded colour profile; ignores a
/// bad one, with a note that names `file`.
vips::VImage ToSrgb(vips::VImage image, const std::filesystem::path& file, Console& console);

}  // namespace ombrix::cli
