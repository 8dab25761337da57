// From any image to 8-bit sRGB.
#pragma once

#include <filesystem>
#include <string>
#include <vips/vips8>

#include "cli/images/losses.h"

namespace ombrix::cli {

/// "16 bits a channel", "floating-point channels"; empty for 8 bits or less.
std::string DepthAbove8Bits(const vips::VImage& image);

/// Red, green, blue and perhaps alpha (not premultiplied), 8 bits each. Follows an embedded colour profile; leaves a
/// damaged one aside. Tells `losses` when colours are converted or a profile is left aside. A WorkError when the image
/// cannot be shown in colours.
vips::VImage ToSrgb(vips::VImage image, const std::filesystem::path& file, Losses& losses);

}  // namespace ombrix::cli
