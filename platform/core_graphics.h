// Bitmap contexts: where the pixels of a locked picture lie. macOS brings them; elsewhere `libombrix_platform`
// defines the same three functions (see platform/bitmap_context.h for how a host makes a context there).
#pragma once

#ifdef __APPLE__
#include <CoreGraphics/CoreGraphics.h>
#else

#include <cstddef>

// Exported from libombrix_platform, though all else here is compiled to stay hidden.
#pragma GCC visibility push(default)
extern "C" {

/// A bitmap context; opaque to everybody but the platform.
using CGContextRef = struct CGContext*;

/// The address of the first byte of the first row.
void* CGBitmapContextGetData(CGContextRef context);

/// The distance from a row's first byte to the next row's, in bytes.
std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context);

/// The size of a pixel in bits.
std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context);

}  // extern "C"
#pragma GCC visibility pop

#endif
