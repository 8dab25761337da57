// Text in PNG files. libvips writes keys up to their first space only, and XMP not as its specification wants it.
#pragma once

#include <string_view>
#include <vector>

#include "cli/images/metadata.h"

namespace ombrix::cli {

/// Chunks of comments, XMP and Photoshop's blocks.
Bytes PngText(const std::vector<Metadata::Comment>& comments, const Bytes& xmp, const Bytes& resources);

/// Adds a chunk: the length of its data, its name, its data and a check sum.
void AppendPngChunk(Bytes& file, std::string_view name, std::span<const std::uint8_t> data);

}  // namespace ombrix::cli
