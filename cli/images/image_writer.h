// From pictures to image files.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "cli/images/image_reader.h"
#include "ombrix/host.h"

namespace ombrix::cli {

/// A kind of file to write.
struct OutputFormat {
    std::string_view suffix;
    std::string_view writer;  ///< libvips' name for its writer
    bool lossy;               ///< has a quality
    bool alpha;
};

/// By the file's suffix. A UsageError lists the suffixes that work.
const OutputFormat& FormatFor(const std::filesystem::path& file);

/// A UsageError when the format has no quality and one is given.
void CheckQuality(const OutputFormat& format, std::optional<int> quality);

/// A locked 24- or 32-bit picture as an image of red, green, blue and, `withAlpha`, alpha. The pixels are not copied:
/// the image must not outlive the lock.
vips::VImage Viewed(const host::Picture& picture, const host::Picture::Lock& pixels, bool withAlpha);

/// Writes an image (8 bits a channel: red, green, blue and perhaps alpha) to the empty file `file`, with the metadata
/// of `origin`. A format without alpha gets the picture on white. A vips::VError when pixels cannot be computed or
/// written.
void WriteImage(const vips::VImage& image, const ImageOrigin& origin, const OutputFormat& format,
                std::optional<int> quality, const std::filesystem::path& file, const std::filesystem::path& name,
                Console& console);

}  // namespace ombrix::cli
