// EXIF as a block of bytes, from its byte order mark on. All of it stays where it is and as it is, but for what no
// longer holds for the picture that is written.
#pragma once

#include "cli/images/tiff_directory.h"

namespace ombrix::cli {

/// The block that a library gives, without what may stand before it. Empty when it is not EXIF.
Bytes PlainExif(std::span<const std::uint8_t> block);

/// What a TIFF file says of its first picture beyond its pixels; empty when that is nothing.
Bytes ExifOfTiff(std::span<const std::uint8_t> file);

/// A block that says no more than that the picture is upright.
Bytes UprightExif();

/// Whether a block says more than every block does: how the picture is stored.
bool SaysSomething(std::span<const std::uint8_t> exif);

bool HasThumbnail(std::span<const std::uint8_t> exif);

/// The picture that a block belongs to.
struct ExifPicture {
    int width = 0;
    int height = 0;
    double xResolution = 1;  ///< pixels in a millimetre; 1 when it is not known
    double yResolution = 1;
};

/// The block of an upright sRGB picture, without pictures in it: the thumbnail and previews show what the picture was.
Bytes ExifFor(Bytes exif, const ExifPicture& picture);

/// Bytes that a thumbnail takes beside those of its own.
inline constexpr std::size_t kThumbnailFields = 128;
/// Adds a JPEG file as the thumbnail of a block that has none.
Bytes WithThumbnail(Bytes exif, std::span<const std::uint8_t> jpeg);

/// Adds the fields of a block to the first picture of a TIFF file that is open for reading and writing. False when the
/// file grows too large for its offsets. A std::system_error when it cannot be written.
bool AddExifToTiff(int descriptor, std::span<const std::uint8_t> exif);

}  // namespace ombrix::cli
