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

/// Pixels, not owned.
struct PixelView {
    std::uint8_t* base = nullptr;
    std::ptrdiff_t rowBytes = 0;
    std::int64_t width = 0;   ///< pixels
    std::int64_t height = 0;  ///< rows
    int depth = 0;            ///< 16, 24 or 32 bits per pixel

    std::uint8_t* Row(std::int64_t y) const { return base + y * rowBytes; }
    std::size_t UsedRowBytes() const { return static_cast<std::size_t>(width * (depth / 8)); }
};

/// Pixels and the bitmap context that describes them to plug-ins. Base and rows are aligned to 64 bytes. A size of 0
/// will do.
class PixelBuffer {
  public:
    /// Why such a buffer is impossible, as the end of a sentence; empty when it is possible.
    static std::string Objection(std::int64_t width, std::int64_t height, std::int64_t depth);
    /// Null without memory, or when there is an Objection.
    static std::unique_ptr<PixelBuffer> Make(std::int64_t width, std::int64_t height, std::int64_t depth,
                                             Content content);

    /// The same over the caller's memory, which has to outlive the buffer. `rowBytes` is the distance from a row to the
    /// next. Null without memory, or when there is an Objection.
    static std::unique_ptr<PixelBuffer> Wrap(const PixelView& pixels);

    /// The pixels. Content::Any becomes 0 first, unless a plug-in has the context already.
    const PixelView& View();
    /// The same for those who do not look at the pixels.
    const PixelView& Shape() const { return view_; }
    /// For plug-ins, which find Content::Any as it is.
    CGContextRef Context();

  private:
    bool MakeContext();

    struct ReleaseContext {
        void operator()(CGContextRef context) const { OmbrixBitmapContextRelease(context); }
    };
    PixelMemory memory_;
    std::unique_ptr<CGContext, ReleaseContext> context_;
    PixelView view_;
    bool holdsAnything_ = false;
};

}  // namespace ombrix::host
