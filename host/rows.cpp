#include "ombrix/rows.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>
#include <limits>

#include "host/pixel_memory.h"
#include "host/row_formats.h"
#include "text/numbers.h"

namespace ombrix::host {
namespace {

constexpr std::size_t kPiece = 512;  // pixels: their ARGB stays in the first cache

std::int64_t UsedBytes(const Rows& rows) { return rows.width * BytesPerPixel(rows.layout); }

/// The rows from the lowest address up.
Rows Upwards(const Rows& rows) { return rows.rowBytes < 0 ? UpsideDown(rows) : rows; }

/// On the way from one alpha to the other.
AlphaStep StepBetween(const Rows& source, const Rows& destination) {
    const bool from = HasAlpha(source) && source.alpha == Alpha::Premultiplied;
    const bool to = HasAlpha(destination) && destination.alpha == Alpha::Premultiplied;
    if (from != to && HasAlpha(source)) return from ? AlphaStep::Unpremultiply : AlphaStep::Premultiply;
    return HasAlpha(destination) && !HasAlpha(source) ? AlphaStep::Opaque : AlphaStep::Keep;
}

void CopyRow(const RowFormats& formats, const std::uint8_t* from, Layout source, AlphaStep step, std::uint8_t* to,
             Layout destination, std::size_t length) {
    if (step == AlphaStep::Keep && destination == Layout::Argb) return formats.decode(from, source, length, to);
    if (step == AlphaStep::Keep && source == Layout::Argb) return formats.encode(from, length, destination, to);
    std::array<std::uint8_t, 4 * kPiece> argb;
    const std::size_t sourceBytes = BytesPerPixel(source), destinationBytes = BytesPerPixel(destination);
    while (length > 0) {
        const std::size_t piece = std::min(length, kPiece);
        formats.decode(from, source, piece, argb.data());
        formats.change(argb.data(), piece, step);
        formats.encode(argb.data(), piece, destination, to);
        from += piece * sourceBytes;
        to += piece * destinationBytes;
        length -= piece;
    }
}

}  // namespace

int BytesPerPixel(Layout layout) {
    if (layout == Layout::Grey) return 1;
    return layout == Layout::Rgb || layout == Layout::Bgr ? 3 : 4;
}

bool HasAlpha(const Rows& rows) { return BytesPerPixel(rows.layout) == 4 && rows.alpha != Alpha::None; }

std::string Objection(const Rows& rows) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();  // as plug-ins keep sizes
    if (rows.layout < Layout::Grey || rows.layout > Layout::Abgr) {
        return "there is no layout " + std::to_string(static_cast<int>(rows.layout));
    }
    if (rows.alpha < Alpha::None || rows.alpha > Alpha::Premultiplied) {
        return "there is no alpha " + std::to_string(static_cast<int>(rows.alpha));
    }
    const std::string size = text::Size(rows.width, rows.height) + " pixels";
    if (rows.width < 0 || rows.height < 0) return "there is no size of " + size;
    // The command's pictures are padded to 64 bytes.
    if (rows.width > (kMost - 64) / 4 || rows.height > kMost) return size + " are more than a plug-in can address";
    if (rows.width == 0 || rows.height == 0) return {};
    if (rows.base == nullptr) return size + " have no memory";
    // The least of all numbers has no negative.
    const bool isFar = rows.rowBytes == std::numeric_limits<std::ptrdiff_t>::min();
    const std::int64_t apart = isFar ? std::numeric_limits<std::int64_t>::max() : std::abs(std::int64_t{rows.rowBytes});
    if (rows.height > 1 && apart < UsedBytes(rows)) {
        return "rows of " + std::to_string(UsedBytes(rows)) + " bytes overlap, " + std::to_string(rows.rowBytes) +
               " bytes apart";
    }
    if (isFar || (rows.height > 1 && apart > (std::int64_t{1} << 56) / rows.height))
        return size + " do not fit into memory";
    return {};
}

Rows UpsideDown(const Rows& rows) {
    Rows turned = rows;
    if (rows.height > 0) turned.base = rows.Row(rows.height - 1);
    turned.rowBytes = -rows.rowBytes;
    return turned;
}

Rows Part(const Rows& rows, std::int64_t top, std::int64_t height) {
    Rows part = rows;
    part.base = rows.Row(top);
    part.height = height;
    return part;
}

Overlap OverlapOf(const Rows& first, const Rows& second) {
    if (first.width == 0 || first.height == 0 || second.width == 0 || second.height == 0) return Overlap::None;
    const bool isSingle = first.height == 1 && second.height == 1;
    if (first.base == second.base && (first.rowBytes == second.rowBytes || isSingle) && first.width == second.width &&
        first.height == second.height && UsedBytes(first) == UsedBytes(second)) {
        return Overlap::Same;
    }
    const Rows a = Upwards(first), b = Upwards(second);
    const auto start = [](const Rows& rows) { return reinterpret_cast<std::uintptr_t>(rows.base); };
    const auto end = [&](const Rows& rows) {
        return reinterpret_cast<std::uintptr_t>(rows.Row(rows.height - 1)) +
               static_cast<std::uintptr_t>(UsedBytes(rows));
    };
    if (end(a) <= start(b) || end(b) <= start(a)) return Overlap::None;
    // Columns of one picture lie among each other and are apart.
    const bool isSameDistance = a.rowBytes == b.rowBytes || a.height == 1 || b.height == 1;
    const std::int64_t distance = a.height == 1 ? b.rowBytes : a.rowBytes;
    if (!isSameDistance || distance == 0 || isSingle) return Overlap::Some;
    std::int64_t shift = static_cast<std::int64_t>(start(b) - start(a)) % distance;
    if (shift < 0) shift += distance;
    return shift >= UsedBytes(a) && shift + UsedBytes(b) <= distance ? Overlap::None : Overlap::Some;
}

void CopyPixels(const Rows& source, const Rows& destination) {
    const AlphaStep step = StepBetween(source, destination);
    const bool isSame = source.layout == destination.layout && step == AlphaStep::Keep;
    if (isSame && source.base == destination.base) return;
    const RowFormats& formats = RowFormatsHere();
    for (std::int64_t y = 0; y < source.height; ++y) {
        if (isSame) {
            std::memcpy(destination.Row(y), source.Row(y), static_cast<std::size_t>(UsedBytes(source)));
        } else {
            CopyRow(formats, source.Row(y), source.layout, step, destination.Row(y), destination.layout,
                    static_cast<std::size_t>(source.width));
        }
    }
}

std::shared_ptr<void> NewRowMemory(std::size_t bytes) { return TakePixelMemory(bytes, Content::Any); }

}  // namespace ombrix::host
