// Image files into pictures.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vips/vips8>

#include "cli/console.h"
#include "host/host.h"

namespace ombrix::cli {

/// What the file of a picture said besides its colours.
struct ImageOrigin {
    bool hasAlpha = false;  ///< the file had an alpha channel; without one all pixels are opaque
    bool isOpaque = true;   ///< no pixel is even slightly transparent
    vips::VImage metadata;  ///< see MetadataOf
};

struct ReadPicture {
    host::Picture picture;  ///< 32 bits: alpha, red, green, blue
    ImageOrigin origin;
};

/// A WorkError when the file is missing, empty, or nothing that could be read as an image. Cheap: for finding such
/// mistakes before the work begins.
void CheckImageFile(const std::filesystem::path& file);

/// Reads an image file of any kind that libvips knows. The pixels come out upright (the EXIF orientation is taken into
/// them), in sRGB, with 8 bits a channel; a note tells when the file had more, or more pages than the first.
/// A WorkError when the file is missing, empty, damaged or no image, or has more than `maxPixels` pixels, which is
/// found out before any of them is decoded.
ReadPicture ReadImage(host::Host& host, const std::filesystem::path& file, std::int64_t maxPixels, Console& console);

/// A new picture with the pixels of an image of 3 bands (red, green, blue) or 4 (with alpha) of 8 bits each. The
/// console is told how far it is. A vips::VError when the pixels cannot be had. `leastAlpha`, when given, is set to the
/// alpha of the most transparent pixel.
host::Picture PictureOf(host::Host& host, const vips::VImage& image, Console& console,
                        std::uint8_t* leastAlpha = nullptr);

/// What libvips last complained about, on one line, without its name for the part that complained; clears it.
std::string TakeLibraryMessage();

}  // namespace ombrix::cli
