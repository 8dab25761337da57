// What kind of image file to write, and how.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "cli/options.h"

namespace ombrix::cli {

/// What a file is, as far as metadata go.
enum class FileKind { Jpeg, Png, WebP, Tiff, Heif, Jxl, Jp2, Gif, Vips, Other };

/// A kind of file to write.
struct OutputFormat {
    std::string_view suffix;
    FileKind kind;
    std::string_view writer;  ///< libvips' name for its writer
    bool lossy;               ///< has a quality
    bool alpha;

    /// Whether it keeps every pixel, or does so when told.
    bool CanBeLossless() const { return kind != FileKind::Jpeg; }
};

/// By the file's suffix. A UsageError lists the suffixes that work.
const OutputFormat& FormatFor(const std::filesystem::path& file);

/// An output as it is typed: "out.tif[compression=deflate]" is a file and its writer's options, and "-" is standard
/// output.
struct OutputName {
    std::filesystem::path file;
    std::string options;  ///< "compression=deflate"
    bool isStandardOutput = false;
};
OutputName ParseOutputName(const std::string& word);

/// How a file is written.
struct Encoding {
    const OutputFormat& format;
    std::string options;         ///< of the writer: "compression=deflate,predictor=none"
    std::optional<int> quality;  ///< 1 to 100; none where the format or the options need none
    bool strip = false;          ///< without metadata

    /// Sets an option of the writer that was not given.
    void Prefer(const std::string& name, const std::string& value);
    /// For formats that have such an option.
    void BeLossless();
};

/// A UsageError when the suffix or the quality means nothing. Needs no libvips, and does not check the options.
Encoding EncodingFor(const OutputName& output, const Options& options);

/// A UsageError when the writer has no such option, or the option no such value. Needs libvips.
void CheckWriterOptions(const OutputName& output, const OutputFormat& format);

}  // namespace ombrix::cli
