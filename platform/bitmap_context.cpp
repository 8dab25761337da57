#include "platform/bitmap_context.h"

#include <new>

struct CGContext {
    void* data;
    std::size_t bytesPerRow;
    std::size_t bitsPerPixel;
};

CGContextRef OmbrixBitmapContextCreate(void* data, std::size_t bytesPerRow, std::size_t bitsPerPixel) {
    return new (std::nothrow) CGContext{data, bytesPerRow, bitsPerPixel};
}

void OmbrixBitmapContextRelease(CGContextRef context) { delete context; }

// A null context gives null and 0, as on macOS.

void* CGBitmapContextGetData(CGContextRef context) { return context ? context->data : nullptr; }

std::size_t CGBitmapContextGetBytesPerRow(CGContextRef context) { return context ? context->bytesPerRow : 0; }

std::size_t CGBitmapContextGetBitsPerPixel(CGContextRef context) { return context ? context->bitsPerPixel : 0; }
