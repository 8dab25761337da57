// Puts metadata into image files of every kind, as far as they can hold it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>
#include <vips/vips8>

#include "cli/images/exif.h"
#include "cli/images/exif_room.h"
#include "cli/images/metadata.h"
#include "cli/images/output_format.h"
#include "cli/images/thumbnail.h"

namespace ombrix::cli {

/// For one file. Must outlive the image that it makes.
class MetadataWriter {
  public:
    MetadataWriter(const Metadata& metadata, const Encoding& encoding) : metadata_(metadata), encoding_(encoding) {}
    MetadataWriter(const MetadataWriter&) = delete;
    MetadataWriter& operator=(const MetadataWriter&) = delete;

    /// The image for libvips to write: sRGB, upright, with what libvips can write of the metadata.
    vips::VImage Attach(const vips::VImage& image);
    /// Puts the rest into the file that libvips has written, which is open for reading and writing. A
    /// std::system_error when it cannot be written. False when the file has grown too large for its EXIF.
    bool Finish(int descriptor);

    /// What the file cannot hold.
    const std::vector<std::string>& Lost() const { return lost_; }

  private:
    void AttachExif(vips::VImage& image);
    /// Makes a thumbnail as the pixels go by.
    void WatchForThumbnail(vips::VImage& image, const ExifPicture& picture, std::size_t size);
    void AttachXmp(const vips::VImage& image);
    /// Photoshop's blocks and comments.
    void AttachTexts(const vips::VImage& image);
    /// False when the file has no room for them.
    bool FillSegments(int descriptor) const;

    const Metadata& metadata_;
    const Encoding& encoding_;
    Bytes exif_;  ///< of the result, without a thumbnail
    std::optional<ExifRoom> room_;
    Bytes xmp_;       ///< of the result, where libvips does not write it
    Bytes chunks_;    ///< of a PNG file
    Bytes segments_;  ///< of a JPEG file
    std::optional<MarkedRoom> segmentRoom_;
    std::optional<ThumbnailMaker> thumbnail_;
    std::size_t thumbnailSize_ = 0;  ///< bytes at most
    std::function<void(VipsRegion*)> look_;
    std::vector<std::string> lost_;
};

/// What a file that is written so would lack: "EXIF", "comments".
std::vector<std::string> LostMetadata(const Metadata& metadata, const Encoding& encoding);

}  // namespace ombrix::cli
