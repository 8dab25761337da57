// How a host describes the pixels of a picture to a plug-in where the system has no bitmap contexts of its own.
#pragma once

#include <cstddef>

#include "platform/core_graphics.h"

#pragma GCC visibility push(default)
extern "C" {

/// Makes a context that describes `data` and does not own it. Null when there is no memory for it.
CGContextRef OmbrixBitmapContextCreate(void* data, std::size_t bytesPerRow, std::size_t bitsPerPixel);

/// Frees a context. The pixels that it described are left alone.
void OmbrixBitmapContextRelease(CGContextRef context);

}  // extern "C"
#pragma GCC visibility pop
