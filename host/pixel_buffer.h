// The pixels of a picture.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/pixel_memory.h"
#include "platform/bitmap_context.h"

namespace ombrix::host {

/// Where pixels lie, without owning them.
struct PixelView {
    std::uint8_t* base = nullptr;
    std::ptrdiff_t rowBytes = 0;
    std::int64_t width = 0;   ///< pixels
    std::int64_t height = 0;  ///< rows
    int depth = 0;            ///< 16, 24 or 32 bits per pixel

    std::uint8_t* Row(std::int64_t y) const { return base + y * rowBytes; }
    std::size_t UsedRowBytes() const { return static_cast<std::size_t>(width * (depth / 8)); }
};

/// Rows of pixels and the bitmap context that describes them. Base and rows are aligned to 64 bytes; a size of 0 is
/// fine. The context owns nothing.
class PixelBuffer {
  public:
    /// Why there can be no buffer of this size and depth, as the end of a sentence; empty when there can.
    static std::string Objection(std::int64_t width, std::int64_t height, std::int64_t depth);
    /// Null when there is an objection or no memory.
    static std::unique_ptr<PixelBuffer> Make(std::int64_t width, std::int64_t height, std::int64_t depth,
                                             Content content);

    /// The pixels; those of a buffer made for any content are 0 from here on, if nobody had the context before.
    const PixelView& View();
    /// For plug-ins. Who gets the context of a buffer made for any content finds there what the memory held before.
    CGContextRef Context();

  private:
    struct ReleaseContext {
        void operator()(CGContextRef context) const { OmbrixBitmapContextRelease(context); }
    };
    PixelMemory memory_;
    std::unique_ptr<CGContext, ReleaseContext> context_;
    PixelView view_;
    bool holdsAnything_ = false;
};

}  // namespace ombrix::host
