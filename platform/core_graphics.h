// Bitmap contexts, which describe the pixels of locked pictures. macOS has them; elsewhere libombrix_platform defines
// these three functions, and platform/bitmap_context.h makes contexts.
#pragma once

#ifdef __APPLE__
#include <CoreGraphics/CoreGraphics.h>
#else

#include <cstddef>

// Exported from libombrix_platform; the build hides all else.
#pragma GCC visibility push(default)
extern "C" {

/// Opaque to all but the platform.
using CGContextRef = struct CGContext*;

/// The first byte of the first row.
void* CGBitmapContextGetData(CGContextRef context);

/// Bytes from the start of a row to the start of the next.
std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context);

std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context);

}  // extern "C"
#pragma GCC visibility pop

#endif
