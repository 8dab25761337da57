// EXIF for files that libvips writes. It writes a block of its own making, before the thumbnail of the result can be
// known, so it is given one that only takes up room, which the real one takes over in the finished file.
#pragma once

#include <vips/vips8>

#include "cli/images/marked_room.h"

namespace ombrix::cli {

/// Bytes of a block that fit into a JPEG file beside what libvips adds.
inline constexpr std::size_t kMostExifInJpeg = 65'200;

class ExifRoom {
  public:
    /// For blocks of up to `size` bytes, chunks included.
    explicit ExifRoom(std::size_t size);

    /// Replaces the image's own EXIF.
    void ReserveIn(const vips::VImage& image) const;
    /// Puts the block into the file, a JPEG, PNG, WebP or HEIF file that is open for reading and writing, and before
    /// it, in a PNG file, other chunks. False when the file has no such room. A std::system_error when it cannot be
    /// written.
    bool Fill(int descriptor, const Bytes& exif, const Bytes& chunks = {}) const;

  private:
    MarkedRoom room_;
};

}  // namespace ombrix::cli
