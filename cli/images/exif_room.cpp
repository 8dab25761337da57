#include "cli/images/exif_room.h"

#include <algorithm>
#include <string_view>

#include "cli/images/mapped_file.h"
#include "cli/images/png_text.h"

namespace ombrix::cli {

namespace {

/// libvips writes its own fields before the mark: at least so many bytes, and at most.
constexpr std::size_t kLeastBefore = 64, kMostBefore = 1024;

constexpr std::string_view kEmptyBlock("II*\0\10\0\0\0\0\0\0\0\0\0", 14);
constexpr std::string_view kBlockBegin("II*\0\10\0\0\0", 8);
constexpr std::string_view kPrefix("Exif\0\0", 6);
constexpr std::size_t kChunkHeader = 8, kChunkEnd = 4;  // bytes of a PNG chunk around its data

}  // namespace

ExifRoom::ExifRoom(std::size_t size) : room_(size > kLeastBefore ? size - kLeastBefore : 0) {}

void ExifRoom::ReserveIn(const vips::VImage& image) const {
    const Bytes& mark = room_.Mark();
    vips_image_set_blob_copy(image.get_image(), VIPS_META_EXIF_NAME, kEmptyBlock.data(), kEmptyBlock.size());
    vips_image_set_blob_copy(image.get_image(), "jpeg-thumbnail-data", mark.data(), mark.size());
}

bool ExifRoom::Fill(int descriptor, const Bytes& exif, const Bytes& chunks) const {
    const MappedFile mapped(descriptor);
    const std::span<const std::uint8_t> file = mapped.Bytes();
    const auto mark = room_.FindIn(file);
    if (!mark) return false;
    const std::size_t end = *mark + room_.Mark().size();
    std::size_t begin = *mark;
    do {
        if (begin == 0 || *mark - begin > kMostBefore) return false;
        --begin;
    } while (!StandsAt(file, begin, kBlockBegin));
    const bool isPng = StandsAt(file, begin - 4, "eXIf");
    // WebP files have the block alone, although libvips puts a prefix before it.
    if (StandsAt(file, 0, "RIFF") && begin >= kPrefix.size() && StandsAt(file, begin - kPrefix.size(), kPrefix)) {
        begin -= kPrefix.size();
    }
    if (end - begin < exif.size() + chunks.size()) return false;
    Bytes filled = exif;
    filled.resize(end - begin - chunks.size());
    if (isPng) {
        Bytes all = chunks;
        AppendPngChunk(all, "eXIf", filled);
        WriteAt(descriptor, all, begin - kChunkHeader);
        return all.size() == kChunkHeader + (end - begin) + kChunkEnd;
    }
    WriteAt(descriptor, filled, begin);
    return true;
}

}  // namespace ombrix::cli
