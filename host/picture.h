// Pictures and points of the host's language, seen from C++.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "host/object.h"

namespace ombrix::host {

/// A picture: rows of pixels of 16, 24 or 32 bits, or a kind that is not a bitmap (depth 0, no pixels).
///
/// A 32-bit pixel is four bytes: alpha (255 is opaque), red, green, blue. A 24-bit pixel is red, green, blue. A 16-bit
/// pixel is a little-endian word with 5 bits each of red, green and blue, blue lowest. Rows are padded to a multiple
/// of 64 bytes. The bytes of a picture from Host::NewPicture are 0. What a plug-in makes holds what the plug-in wrote,
/// and before that what the memory held: of an effect's result, look at ErrorCode first.
class Picture : public Object {
  public:
    Picture() = default;
    /// An Error when the object is something else than a picture; nil gives nil.
    explicit Picture(Object object);

    int Width() const;   ///< pixels
    int Height() const;  ///< rows
    int Depth() const;   ///< bits per pixel, 0 when not a bitmap
    /// The mask that is attached to the picture, or nil; with `create`, one that is white all over is made first.
    Picture Mask(bool create = false) const;
    /// Attaches a mask (a picture of the same size) or takes it off (nil).
    void SetMask(const Picture& mask) const;

    class Lock;
};

/// The pixels of a picture, valid as long as this scope is.
class Picture::Lock {
  public:
    /// An Error when the picture is nil or not a bitmap.
    explicit Lock(const Picture& picture);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

    /// The bytes of the pixels of row `y`, without the padding.
    std::span<std::uint8_t> Row(int y) const { return {base_ + y * rowBytes_, usedBytes_}; }
    std::uint8_t* Base() const { return base_; }
    std::ptrdiff_t RowBytes() const { return rowBytes_; }

  private:
    Picture picture_;
    std::uint8_t* base_;
    std::ptrdiff_t rowBytes_;
    std::size_t usedBytes_;
};

/// A point: two Integers, "x" and "y", in pixels.
class Point : public Object {
  public:
    Point() = default;
    /// An Error when the object is something else than a point; nil gives nil.
    explicit Point(Object object);
    std::int64_t X() const;
    std::int64_t Y() const;
};

}  // namespace ombrix::host
