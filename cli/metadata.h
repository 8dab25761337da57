// What an image file says besides its pixels, on its way from the file that is read to the one that is written.
#pragma once

#include <vips/vips8>

namespace ombrix::cli {

/// One pixel that carries EXIF, XMP, IPTC and the resolution of an image that has been turned upright. Holds on to
/// nothing of the image or its file. Left out are the embedded thumbnail, which shows the picture as it was, and the
/// colour profile: pixels are sRGB once they are read.
vips::VImage MetadataOf(const vips::VImage& upright);

/// The image, which is upright, with what MetadataOf kept.
vips::VImage WithMetadata(const vips::VImage& image, const vips::VImage& metadata);

}  // namespace ombrix::cli
