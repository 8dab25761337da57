#include "engine/locked_pixels.h"

#include <cstddef>
#include <limits>

#include "sdk/host_calls.h"

namespace ombrix {

bool LockEPixels(REALobjectStruct* picture, EBitmap& bitmap) {
    bitmap.picture = picture;
    bitmap.description = {};
    if (!REALLockPictureDescription(picture, &bitmap.description, kBitmapContextPicture)) return false;
    return LockEPixels(picture, REALpictureDescription(bitmap.description), bitmap);
}

bool LockEPixels(REALobjectStruct* picture, const REALpictureDescription& description, EBitmap& bitmap) {
    bitmap.picture = picture;
    bitmap.description = description;
    bitmap.context = static_cast<CGContextRef>(description.data);
    bitmap.baseAddress = bitmap.context ? static_cast<std::uint8_t*>(CGBitmapContextGetData(bitmap.context)) : nullptr;
    return true;
}

void UnlockEPixels(EBitmap& bitmap) { REALUnlockPictureDescription(bitmap.picture); }

LockedPixels::LockedPixels(REALobjectStruct* picture) {
    locked_ = picture && LockEPixels(picture, bitmap_);
    if (!locked_ || !bitmap_.context) return;

    // Records keep row bytes in 32 bits.
    const std::size_t bits = CGBitmapContextGetBitsPerPixel(bitmap_.context);
    const std::size_t rowBytes = CGBitmapContextGetBytesPerRow(bitmap_.context);
    if ((bits != 24 && bits != 32) || rowBytes > std::size_t{std::numeric_limits<std::int32_t>::max()}) return;
    bitsPerPixel_ = static_cast<std::int32_t>(bits);
    rowBytes_ = static_cast<std::int32_t>(rowBytes);
    usable_ = DescribesItsRows();
}

bool LockedPixels::DescribesItsRows() const {
    if (Width() <= 0 || Height() <= 0) return true;  // nothing is read
    return bitmap_.baseAddress && std::int64_t{rowBytes_} >= std::int64_t{Width()} * BytesPerPixel();
}

void LockedPixels::Unlock() {
    if (locked_) UnlockEPixels(bitmap_);
    locked_ = false;
    usable_ = false;
}

std::int32_t LockedPixels::RowPadding(std::int32_t width) const {
    return static_cast<std::int32_t>(rowBytes_ - std::int64_t{width} * bitsPerPixel_ / 8);
}

}  // namespace ombrix
