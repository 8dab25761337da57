// A thumbnail of an image whose pixels go by once.
#pragma once

#include <functional>
#include <mutex>
#include <vector>
#include <vips/vips8>

#include "cli/images/tiff_directory.h"

namespace ombrix::cli {

/// Pixels of the longer side, as EXIF wants it.
inline constexpr int kThumbnailSize = 160;

class ThumbnailMaker {
  public:
    /// Of the first frame, which is `height` rows high, of an image of 3 or 4 bands of 8 bits.
    ThumbnailMaker(int width, int height);

    /// Takes what a part contributes. Any thread may call it, with parts in any order.
    void Add(VipsRegion* part);

    /// The thumbnail as a JPEG file of at most `size` bytes; empty when it cannot be as small. Transparent pixels are
    /// laid on white.
    Bytes Jpeg(std::size_t size) const;

  private:
    /// Rows or columns that are looked at: a few of those that a row or column of the thumbnail stands for.
    struct Sample {
        int at;    ///< in the image
        int into;  ///< in the thumbnail
    };
    static std::vector<Sample> Samples(int length, int thumbnailLength);

    const int width_, height_;  // of the thumbnail
    const std::vector<Sample> columns_, rows_;
    std::mutex mutex_;
    std::vector<unsigned> sums_;  // red, green, blue and how many
};

}  // namespace ombrix::cli
