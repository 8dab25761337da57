// From pictures to image files.
#pragma once

#include <filesystem>

#include "cli/images/image_reader.h"
#include "cli/images/output_format.h"
#include "ombrix/host.h"

namespace ombrix::cli {

/// A locked 24- or 32-bit picture as an image of red, green, blue and, `withAlpha`, alpha. The pixels are not copied:
/// the image must not outlive the lock.
vips::VImage Viewed(const host::Picture& picture, const host::Picture::Lock& pixels, bool withAlpha);

/// Writes an image (8 bits a channel: red, green, blue and perhaps alpha) with the metadata of `origin` to an empty
/// file that is open for writing and reading; `name` is for messages. A format without alpha gets the picture on white.
/// A vips::VError when pixels cannot be computed or written.
void WriteImage(const vips::VImage& image, const ImageOrigin& origin, const Encoding& encoding, int descriptor,
                const std::filesystem::path& name, Console& console);

}  // namespace ombrix::cli
