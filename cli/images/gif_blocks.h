// Comments and XMP of GIF files, which libvips neither reads nor writes.
#pragma once

#include <span>

#include "cli/images/metadata.h"

namespace ombrix::cli {

/// Adds what a file says; nothing when it is no GIF file.
void TakeFromGif(std::span<const std::uint8_t> file, Metadata& metadata);

/// Adds to a finished file, which is open for reading and writing. A std::system_error when it cannot be written.
void AddToGif(int descriptor, const std::vector<Metadata::Comment>& comments, const Bytes& xmp);

}  // namespace ombrix::cli
