// The pixels of a locked picture.
#pragma once

#include <cstdint>

#include "platform/core_graphics.h"
#include "sdk/definition_records.h"

namespace ombrix {

/// A locked picture, valid until unlocked.
struct EBitmap {
    REALobjectStruct* picture;
    REALpictureDescription description;
    std::uint8_t* baseAddress;  ///< first byte of the first row
    CGContextRef context;
};

/// Locks a picture. False when the host refuses: then no unlock is due.
bool LockEPixels(REALobjectStruct* picture, EBitmap& bitmap);
/// Takes over a lock of the caller's and its description. Always true.
bool LockEPixels(REALobjectStruct* picture, const REALpictureDescription& description, EBitmap& bitmap);
void UnlockEPixels(EBitmap& bitmap);

/// A scope in which a picture is locked.
class LockedPixels {
  public:
    /// Locks `picture`; null counts as refused.
    explicit LockedPixels(REALobjectStruct* picture);
    ~LockedPixels() { Unlock(); }
    LockedPixels(const LockedPixels&) = delete;
    LockedPixels& operator=(const LockedPixels&) = delete;

    /// Unlocks before the scope ends.
    void Unlock();

    /// Whether effects can work on it: it is locked, has 24 or 32 bits per pixel and a buffer that holds its rows.
    /// Otherwise nothing below is valid.
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
