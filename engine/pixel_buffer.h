// The pixels of a locked picture.
#pragma once

#include <cstdint>

#include "frame/definition_records.h"
#include "platform/core_graphics.h"

namespace ombrix {

/// A locked picture. Valid between lock and unlock; owns nothing.
struct EBitmap {
    REALobjectStruct* picture;
    REALpictureDescription description;
    std::uint8_t* baseAddress;  ///< first byte of the first row
    CGContextRef context;
};

/// Locks a picture. False when the host refuses: nothing else of `bitmap` is then to be read, nor any unlock due.
bool LockEPixels(REALobjectStruct* picture, EBitmap& bitmap);
/// Takes over a lock that the caller has taken itself, with the description that came of it. Always true.
bool LockEPixels(REALobjectStruct* picture, const REALpictureDescription& description, EBitmap& bitmap);
/// Ends the lock.
void UnlockEPixels(EBitmap& bitmap);

/// The lock on a picture's pixels as a scope, and the shape of the buffer behind it.
class LockedPixels {
  public:
    /// Locks `picture`, which may be null: that is then a refused lock.
    explicit LockedPixels(REALobjectStruct* picture);
    ~LockedPixels() { Unlock(); }
    LockedPixels(const LockedPixels&) = delete;
    LockedPixels& operator=(const LockedPixels&) = delete;

    /// Ends the lock before the scope does, where the order of unlocking matters.
    void Unlock();

    /// Whether effects can work on these pixels: locked, 24 or 32 bits per pixel, and a buffer that holds the rows
    /// that the host describes. Everything below is to be read only then.
    bool Usable() const { return usable_; }

    std::uint8_t* Base() const { return bitmap_.baseAddress; }
    std::int32_t Width() const { return bitmap_.description.width; }    ///< pixels
    std::int32_t Height() const { return bitmap_.description.height; }  ///< rows
    std::int32_t BitsPerPixel() const { return bitsPerPixel_; }
    std::int32_t BytesPerPixel() const { return bitsPerPixel_ / 8; }
    std::int32_t RowBytes() const { return rowBytes_; }
    /// Bytes after the first `width` pixels of a row.
    std::int32_t RowPadding(std::int32_t width) const;

  private:
    bool DescribesItsRows() const;

    EBitmap bitmap_{};
    bool locked_ = false;
    bool usable_ = false;
    std::int32_t bitsPerPixel_ = 0;
    std::int32_t rowBytes_ = 0;
};

}  // namespace ombrix
