// What image files say of their pictures, from the file that is read to the one that is written.
#pragma once

#include <filesystem>
#include <string>
#include <vector>
#include <vips/vips8>

#include "cli/images/tiff_directory.h"

namespace ombrix::cli {

/// Refers neither to an image nor to its file.
struct Metadata {
    Bytes exif;       ///< from the byte order mark on
    Bytes xmp;        ///< XML
    Bytes resources;  ///< Photoshop's blocks, IPTC among them
    struct Comment {
        std::string key;  ///< "Comment" where the format has none
        std::string text;

        /// As formats have it that know of no keys: "Author: A. Painter".
        std::string WithKey() const;
    };
    std::vector<Comment> comments;
    double xResolution = 1;  ///< pixels in a millimetre; 1 when it is not known
    double yResolution = 1;
    std::string resolutionUnit;  ///< "in", "cm" or empty

    bool IsEmpty() const { return exif.empty() && xmp.empty() && resources.empty() && comments.empty(); }
};

/// What an image has, which libvips has opened from `file`.
Metadata MetadataOf(const vips::VImage& image, const std::filesystem::path& file);

/// An sRGB image without any metadata but frames and that it is sRGB: a small profile.
vips::VImage WithoutMetadata(const vips::VImage& image);

/// XMP of an upright picture, without thumbnails.
Bytes XmpFor(const Bytes& xmp);

/// Photoshop's blocks, without thumbnails, from any of the forms that files have: with or without a name before them,
/// or bare IPTC.
Bytes PlainResources(std::span<const std::uint8_t> bytes);
/// Photoshop's blocks as JPEG files have them, and the IPTC block among them as TIFF files have it, or empty.
Bytes ResourcesInJpeg(const Bytes& resources);
Bytes IptcAmong(const Bytes& resources);

}  // namespace ombrix::cli
