// From image files to pictures.
#pragma once

#include <cstdint>
#include <filesystem>
#include <vips/vips8>

#include "cli/console.h"
#include "ombrix/host.h"

namespace ombrix::cli {

/// What an image file holds beside its colours.
struct ImageOrigin {
    bool hasAlpha = false;  ///< without alpha, all pixels are opaque
    bool isOpaque = true;   ///< no pixel is transparent at all
    vips::VImage metadata;  ///< see MetadataOf
};

struct ReadPicture {
    host::Picture picture;  ///< 32 bits: alpha, red, green, blue
    ImageOrigin origin;
};

/// A WorkError when the file is missing, empty or cannot be an image. Cheap enough to find mistakes before the work
/// begins.
void CheckImageFile(const std::filesystem::path& file);

/// Reads any kind of image that libvips knows: upright (the EXIF orientation is applied), in sRGB, 8 bits a channel.
/// Notes when the file has deeper channels or more pages. A WorkError when the file is missing, empty, damaged or no
/// image, or, before anything is decoded, when it has more than `maxPixels` pixels.
ReadPicture ReadImage(host::Host& host, const std::filesystem::path& file, std::int64_t maxPixels, Console& console);

/// A new picture from an image of 3 or 4 bands (red, green, blue, alpha) of 8 bits. Reports progress to the console.
/// Sets `leastAlpha`, if given, to the lowest alpha. A vips::VError when pixels cannot be decoded.
host::Picture PictureOf(host::Host& host, const vips::VImage& image, Console& console,
                        std::uint8_t* leastAlpha = nullptr);

/// libvips' last error on one line, without the name of the part that reports it. Clears it.
std::string TakeLibraryMessage();

}  // namespace ombrix::cli
