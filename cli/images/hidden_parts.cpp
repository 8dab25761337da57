#include "cli/images/hidden_parts.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

#include "cli/images/jpeg_file.h"
#include "cli/images/mapped_file.h"
#include "cli/images/tiff_directory.h"

namespace ombrix::cli {

namespace {

using View = std::span<const std::uint8_t>;

bool Holds(View bytes, std::string_view text) {
    return std::search(bytes.begin(), bytes.end(), std::boyer_moore_searcher(text.begin(), text.end())) != bytes.end();
}

std::vector<std::string> OfJpeg(const std::filesystem::path& file) {
    std::vector<std::string> parts;
    const auto header = ReadJpegHeader(file);
    if (!header) return parts;
    if (header->hasGainMap) {
        parts.emplace_back("gain map");
    } else if (header->hasMorePictures) {
        parts.emplace_back("further pictures");
    }
    if (header->hasExtendedXmp) parts.emplace_back("extended XMP");
    for (const std::string& segment : header->unknownSegments) parts.push_back(segment + " block");
    return parts;
}

/// libvips reads the first picture of an animated PNG file.
std::vector<std::string> OfPng(View file) {
    constexpr std::size_t kSignature = 8, kAround = 12;  // bytes; around a chunk's data
    for (std::size_t at = kSignature; at + kAround <= file.size();) {
        if (StandsAt(file, at + 4, "IDAT")) break;
        if (StandsAt(file, at + 4, "acTL")) return {"animation"};
        at += kAround + GetNumber(file, at, 4, false);
    }
    return {};
}

/// HEIC and AVIF files describe their parts in a box of their own.
std::vector<std::string> OfHeif(View file) {
    for (std::size_t at = 0; at + 8 <= file.size();) {
        const std::uint64_t size = GetNumber(file, at, 4, false);
        if (size < 8 || size > file.size() - at) break;
        if (StandsAt(file, at + 4, "meta")) {
            const View meta = file.subspan(at, size);
            if (Holds(meta, "aux:hdrgainmap") || Holds(meta, "tmap")) return {"gain map"};
            if (Holds(meta, "aux:disparitymap") || Holds(meta, "aux:depth")) return {"depth map"};
            break;
        }
        at += size;
    }
    return {};
}

std::vector<std::string> OfTiff(View file) {
    constexpr std::uint16_t kLayers = 0x935c;
    const auto layout = LayoutOf(file);
    if (layout && FirstDirectory(file, *layout).Find(kLayers) != nullptr) return {"layers"};
    return {};
}

}  // namespace

std::vector<std::string> HiddenParts(const std::filesystem::path& file) {
    const MappedFile mapped(file);
    const View bytes = mapped.Bytes();
    if (StandsAt(bytes, 0, "\xff\xd8")) return OfJpeg(file);
    if (StandsAt(bytes, 0, "\x89PNG")) return OfPng(bytes);
    if (StandsAt(bytes, 4, "ftyp")) return OfHeif(bytes);
    return OfTiff(bytes);
}

}  // namespace ombrix::cli
