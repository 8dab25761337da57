// Directories of TIFF files and of EXIF blocks, which are small TIFF files. Fields keep every bit of their values:
// the libraries for EXIF convert numbers, leave out tags that they do not know, and move notes of camera makers, which
// break when moved.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "cli/images/bytes.h"

namespace ombrix::cli {

struct TiffField {
    static constexpr std::uint16_t kAscii = 2, kShort = 3, kLong = 4, kRational = 5, kUndefined = 7;

    std::uint16_t tag = 0;
    std::uint16_t type = 0;
    std::uint64_t count = 0;
    Bytes value;         ///< in the file's byte order
    std::size_t at = 0;  ///< of the value in the file
};

struct TiffDirectory {
    std::vector<TiffField> fields;
    std::uint64_t next = 0;  ///< where the next directory begins; 0 after the last
    std::size_t nextAt = 0;  ///< where that is said

    const TiffField* Find(std::uint16_t tag) const;
    /// Adds a field or replaces the one of the same tag.
    void Set(TiffField field);
};

/// How a TIFF file is laid out.
struct TiffLayout {
    bool littleEndian = true;
    bool big = false;  ///< BigTIFF, with offsets of 8 bytes

    std::size_t OffsetSize() const { return big ? 8 : 4; }
    /// Where the header has the offset of the first directory.
    std::size_t FirstAt() const { return big ? 8 : 4; }

    std::uint64_t Number(const TiffField& field, std::size_t index = 0) const;
    TiffField MakeField(std::uint16_t tag, std::uint16_t type, const std::vector<std::uint64_t>& numbers) const;
};

/// Nothing when the bytes do not begin as a TIFF file does.
std::optional<TiffLayout> LayoutOf(std::span<const std::uint8_t> file);
/// Without fields that lie beyond the end of the file. Empty when the directory itself does.
TiffDirectory ReadDirectory(std::span<const std::uint8_t> file, const TiffLayout& layout, std::uint64_t at);
TiffDirectory FirstDirectory(std::span<const std::uint8_t> file, const TiffLayout& layout);
/// The directory that a field of `parent` points to; empty when it has none.
TiffDirectory SubDirectory(std::span<const std::uint8_t> file, const TiffLayout& layout, const TiffDirectory& parent,
                           std::uint16_t tag);

/// The directory and after it its values, to stand at `offset`, an even number.
Bytes WriteDirectory(TiffDirectory directory, const TiffLayout& layout, std::uint64_t offset);

/// The field with its value in another byte order.
TiffField Reordered(TiffField field, const TiffLayout& from, const TiffLayout& to);

}  // namespace ombrix::cli
