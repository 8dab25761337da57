// Images of libvips as the effects see them.
#pragma once

#include <ombrix/ombrix.h>

#include <vips/vips8>

namespace ombrix::bridge {

/// Red, green and blue of 8 bits in sRGB, then the other bands, as 8 bits as well.
vips::VImage InColours(vips::VImage image);

/// The first three bands.
vips::VImage Colours(const vips::VImage& image);

/// Of an image InColours with three or four bands: the pixels of a region, which has them.
ombrix_rows RowsOf(VipsRegion* region, const VipsRect& area);
/// Of an image in memory.
ombrix_rows RowsOf(const vips::VImage& image);

}  // namespace ombrix::bridge
