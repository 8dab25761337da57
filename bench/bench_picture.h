// The pictures that are worked on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "platform/core_graphics.h"
#include "sdk/definition_records.h"

namespace ombrix::bench {

/// Width and height in pixels.
struct Size {
    std::int32_t width;
    std::int32_t height;

    bool operator==(const Size&) const = default;
    double Megapixels() const { return static_cast<double>(width) * height / 1e6; }
};

/// A common camera's.
inline constexpr Size kPhotoSize{4000, 3000};

/// A picture of the benchmark's host. Rows follow each other without padding.
class BenchPicture {
  public:
    /// Of 24 or 32 `bits` per pixel. All bytes are written, with 255, so that no page fault is measured.
    BenchPicture(Size size, int bits);
    /// Over bytes that their owner keeps for as long as this lives.
    BenchPicture(Size size, int bits, std::uint8_t* bytes);
    ~BenchPicture();
    BenchPicture(const BenchPicture&) = delete;
    BenchPicture& operator=(const BenchPicture&) = delete;

    Size Extent() const { return size_; }
    int BytesPerPixel() const { return bytesPerPixel_; }
    std::size_t RowBytes() const { return static_cast<std::size_t>(size_.width) * bytesPerPixel_; }
    std::size_t ByteCount() const { return RowBytes() * size_.height; }
    std::uint8_t* Bytes() const { return bytes_; }
    std::uint8_t* Row(int y) const { return bytes_ + RowBytes() * y; }
    CGContextRef Context() const { return context_; }

    /// The handle that the plug-in sees.
    REALobjectStruct* Handle() { return reinterpret_cast<REALobjectStruct*>(this); }
    static BenchPicture& Of(REALobjectStruct* handle) { return *reinterpret_cast<BenchPicture*>(handle); }

  private:
    struct Free {
        void operator()(std::uint8_t* bytes) const;
    };

    Size size_;
    int bytesPerPixel_;
    std::unique_ptr<std::uint8_t, Free> owned_;  ///< or null
    std::uint8_t* bytes_;
    CGContextRef context_;
};

}  // namespace ombrix::bench
