// Any kind of image into red, green and blue of sRGB, 8 bits each.
#pragma once

#include <filesystem>
#include <string>
#include <vips/vips8>

#include "cli/console.h"

namespace ombrix::cli {

/// "16 bits a channel" or the like for an image that has more than 8; empty otherwise.
std::string DepthAbove8Bits(const vips::VImage& image);

/// The image with 3 bands (red, green, blue) or 4 (with alpha, not premultiplied) of 8 bits each. An embedded colour
/// profile is followed; one that cannot be used is left aside with a note that names `file`.
vips::VImage ToSrgb(vips::VImage image, const std::filesystem::path& file, Console& console);

}  // namespace ombrix::cli
