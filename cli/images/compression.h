// Whether a file's pixels were compressed with loss.
#pragma once

#include <filesystem>

namespace ombrix::cli {

enum class Compression {
    Lossless,
    Lossy,
    Unknown,  ///< HEIC and AVIF with all of their chroma: only decoding them would tell
};

/// By the headers of the kinds that may be either, and of JPEG files. All others are lossless.
Compression CompressionOf(const std::filesystem::path& file);

}  // namespace ombrix::cli
