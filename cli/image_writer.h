// Pictures into image files.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

#include "cli/image_reader.h"
#include "host/host.h"

namespace ombrix::cli {

/// A kind of file that can be written.
struct OutputFormat {
    std::string_view suffix;
    std::string_view writer;  ///< libvips' name for what writes it
    bool lossy;               ///< has a quality
    bool alpha;               ///< can hold an alpha channel
};

/// The kind that the file's suffix asks for. A UsageError, which names those that work, when there is none.
const OutputFormat& FormatFor(const std::filesystem::path& file);

/// A UsageError when a quality is asked of a kind that has none.
void CheckQuality(const OutputFormat& format, std::optional<int> quality);

/// The pixels of a locked 24- or 32-bit picture as an image of red, green, blue and, when asked for and there, alpha.
/// They are not copied: the image is valid as long as the lock.
vips::VImage Viewed(const host::Picture& picture, const host::Picture::Lock& pixels, bool withAlpha);

/// Writes a 24- or 32-bit picture to `file`, an existing empty file. `origin` is the image that the picture was made
/// from, whose metadata is carried over and whose alpha channel, when it had one, is written again; where the format
/// has no alpha, the picture is laid on white. A WorkError, which speaks of `name`, when it cannot be written whole.
void WriteImage(const host::Picture& picture, const ImageOrigin& origin, const OutputFormat& format,
                std::optional<int> quality, const std::filesystem::path& file, const std::filesystem::path& name,
                Console& console);

}  // namespace ombrix::cli
