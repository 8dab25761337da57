// Metadata in the boxes of JPEG XL and JPEG 2000 files, which libvips neither reads nor writes.
#pragma once

#include <span>

#include "cli/images/metadata.h"

namespace ombrix::cli {

/// Adds what a file says; nothing when it is of neither kind.
void TakeFromBoxes(std::span<const std::uint8_t> file, Metadata& metadata);

/// What JPEG 2000 files hold; JPEG XL files hold no IPTC. Any may be empty.
struct BoxedMetadata {
    Bytes exif, xmp, iptc;
};

/// Adds boxes to a finished file, which is open for reading and writing. A std::system_error when it cannot be written.
void AddBoxes(int descriptor, const BoxedMetadata& metadata);

}  // namespace ombrix::cli
