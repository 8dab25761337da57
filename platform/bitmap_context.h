// Making bitmap contexts, for hosts on systems that have none.
#pragma once

#include <cstddef>

#include "platform/core_graphics.h"

#pragma GCC visibility push(default)
extern "C" {

/// Makes a context that describes `data` but does not own it. Null when out of memory.
CGContextRef OmbrixBitmapContextCreate(void* data, std::size_t bytesPerRow, std::size_t bitsPerPixel);

/// Frees a context, not its pixels.
void OmbrixBitmapContextRelease(CGContextRef context);

}  // extern "C"
#pragma GCC visibility pop
