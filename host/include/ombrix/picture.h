// Pictures and points.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "ombrix/api.h"
#include "ombrix/object.h"

namespace ombrix::host {

/// A bitmap of 16, 24 or 32 bits per pixel, or a picture of another kind: depth 0, no pixels.
///
/// A 32-bit pixel is four bytes: alpha (255 is opaque), red, green, blue. A 24-bit pixel is red, green, blue. A 16-bit
/// pixel is a little-endian word with 5 bits each of red, green and blue, blue lowest. Rows are padded to a multiple of
/// 64 bytes.
///
/// Host::NewPicture makes pixels of 0. A picture that a plug-in makes holds what was in memory until the plug-in writes
/// to it, so look at an effect's ErrorCode before its result.
class OMBRIX_API Picture : public Object {
  public:
    Picture() = default;
    /// An Error unless the object is a picture or nil.
    explicit Picture(Object object);

    int Width() const;   ///< pixels
    int Height() const;  ///< rows
    int Depth() const;   ///< bits per pixel; 0 when not a bitmap
    /// The attached mask, or nil. With `create`, attaches a white one where there is none.
    Picture Mask(bool create = false) const;
    /// Attaches a mask of the picture's size, or takes it off (nil).
    void SetMask(const Picture& mask) const;
    /// Takes away the pixels, so that nobody who still has the picture can reach memory of the program under it.
    void DropPixels() const;

    class Lock;
};

/// Locks the pixels for the time of its scope.
class OMBRIX_API Picture::Lock {
  public:
    /// An Error when the picture is nil or not a bitmap.
    explicit Lock(const Picture& picture);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    /// The bytes of row `y` without the padding.
    std::span<std::uint8_t> Row(int y) const { return {base_ + y * rowBytes_, usedBytes_}; }
    std::uint8_t* Base() const { return base_; }
    std::ptrdiff_t RowBytes() const { return rowBytes_; }

  private:
    Picture picture_;
    std::uint8_t* base_;
    std::ptrdiff_t rowBytes_;
    std::size_t usedBytes_;
};

/// A pair of Integers, in pixels.
class OMBRIX_API Point : public Object {
  public:
    Point() = default;
    /// An Error unless the object is a point or nil.
    explicit Point(Object object);
    std::int64_t X() const;
    std::int64_t Y() const;
};

}  // namespace ombrix::host
