// Carries metadata from the file that is read to the one that is written.
#pragma once

#include <vips/vips8>

namespace ombrix::cli {

/// One pixel with the EXIF, XMP, IPTC and resolution of an image that has been turned upright. Refers neither to the
/// image nor to its file. Leaves out the thumbnail, which shows the picture as it was, and the colour profile, since
/// pixels are sRGB by then.
vips::VImage MetadataOf(const vips::VImage& upright);

/// An sRGB image without any metadata but frames and that it is sRGB: a small profile.
vips::VImage WithoutMetadata(const vips::VImage& image);

/// Adds to an upright image what MetadataOf kept.
vips::VImage WithMetadata(const vips::VImage& image, const vips::VImage& metadata);

}  // namespace ombrix::cli
