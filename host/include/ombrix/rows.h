// Rows of pixels in memory of the program, in the layouts that programs have.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "ombrix/api.h"

namespace ombrix::host {

/// The order of the channels in memory, one byte each.
enum class Layout { Grey = 1, Rgb, Bgr, Rgba, Bgra, Argb, Abgr };

/// What the fourth byte of 4-byte pixels is.
enum class Alpha {
    None,          ///< padding, whose value means nothing
    Straight,      ///< colours are not multiplied by it
    Premultiplied  ///< colours are
};

struct Rows {
    void* base = nullptr;         ///< the first byte of the first row
    std::ptrdiff_t rowBytes = 0;  ///< from a row to the next; negative for pictures stored from the bottom up
    std::int64_t width = 0;       ///< pixels
    std::int64_t height = 0;      ///< rows
    Layout layout = Layout::Argb;
    Alpha alpha = Alpha::None;  ///< of 4-byte pixels; others have none

    std::uint8_t* Row(std::int64_t y) const { return static_cast<std::uint8_t*>(base) + y * rowBytes; }
};

OMBRIX_API int BytesPerPixel(Layout layout);
/// Whether the pixels have an alpha that means something.
OMBRIX_API bool HasAlpha(const Rows& rows);

/// Why there can be no such rows, as the end of a sentence; empty when there can.
OMBRIX_API std::string Objection(const Rows& rows);

/// The rows from the last to the first: the same pixels upside down.
OMBRIX_API Rows UpsideDown(const Rows& rows);
/// `height` rows from row `top` on.
OMBRIX_API Rows Part(const Rows& rows, std::int64_t top, std::int64_t height);

enum class Overlap {
    None,
    Same,  ///< every pixel has the same bytes in both
    Some,  ///< or what cannot be told from it
};
OMBRIX_API Overlap OverlapOf(const Rows& a, const Rows& b);

/// Copies pixels to rows of the same size, which do not overlap the source or are OverlapOf's Same. Touches no byte
/// that is of no pixel.
///
/// An alpha that only the destination has becomes 255. One that only the source has is left out, and the padding of
/// 4-byte pixels is copied, or 255. Premultiplied colours c become straight by 255 * c / alpha, at most 255, and by
/// c * alpha / 255 again, rounded to the nearest; those of alpha 0 become 0. Greys become grey colours; colours become
/// (299 * red + 587 * green + 114 * blue) / 1000, the luma of Rec. 601, rounded.
OMBRIX_API void CopyPixels(const Rows& source, const Rows& destination);

/// Memory for rows, which holds anything. Large blocks are kept for the next, as those of pictures are: fresh ones from
/// the system take longer than an effect. For any thread. Null without memory.
OMBRIX_API std::shared_ptr<void> NewRowMemory(std::size_t bytes);

}  // namespace ombrix::host
