#include "host/drawing.h"

#include <algorithm>
#include <cstring>
#include <span>
#include <vector>

namespace ombrix::host {
namespace {

struct Colour {
    int alpha, red, green, blue;
};

// How a pixel of each depth is read and written.

struct Pixel16 {
    static constexpr int kBytes = 2;
    /// From five bits to eight, so that 31 becomes 255.
    static int Widen(int five) { return five << 3 | five >> 2; }
    static Colour Load(const std::uint8_t* pixel) {
        const int word = pixel[0] | pixel[1] << 8;
        return {255, Widen(word >> 10 & 31), Widen(word >> 5 & 31), Widen(word & 31)};
    }
    static void Store(std::uint8_t* pixel, Colour colour) {
        const int word = colour.red >> 3 << 10 | colour.green >> 3 << 5 | colour.blue >> 3;
        pixel[0] = static_cast<std::uint8_t>(word);
        pixel[1] = static_cast<std::uint8_t>(word >> 8);
    }
};

struct Pixel24 {
    static constexpr int kBytes = 3;
    static Colour Load(const std::uint8_t* pixel) { return {255, pixel[0], pixel[1], pixel[2]}; }
    static void Store(std::uint8_t* pixel, Colour colour) {
        pixel[0] = static_cast<std::uint8_t>(colour.red);
        pixel[1] = static_cast<std::uint8_t>(colour.green);
        pixel[2] = static_cast<std::uint8_t>(colour.blue);
    }
};

struct Pixel32 {
    static constexpr int kBytes = 4;
    static Colour Load(const std::uint8_t* pixel) { return {pixel[0], pixel[1], pixel[2], pixel[3]}; }
    static void Store(std::uint8_t* pixel, Colour colour) {
        pixel[0] = static_cast<std::uint8_t>(colour.alpha);
        Pixel24::Store(pixel + 1, colour);
    }
};

template <class Function>
void WithPixelOf(int depth, Function function) {
    if (depth == 16) function(Pixel16{});
    if (depth == 24) function(Pixel24{});
    if (depth == 32) function(Pixel32{});
}

/// The target's pixels along one side, and the source's pixel for each.
struct Side {
    std::int64_t first = 0;
    std::vector<std::int64_t> sources;
};

/// Draws from `from` and `sourceSize` of the source to `at` and `size` of the target. The limits are the pictures'
/// sizes.
Side MapSide(std::int64_t at, std::int64_t size, std::int64_t limit, std::int64_t from, std::int64_t sourceSize,
             std::int64_t sourceLimit) {
    // Any positions and sizes are multiplied.
    using Wide = __int128;
    Side side;
    if (sourceSize == 0) return side;
    const Wide end = std::min<Wide>(limit, static_cast<Wide>(at) + size);
    for (std::int64_t place = std::max<std::int64_t>(at, 0); place < end; ++place) {
        const Wide source = from + (static_cast<Wide>(place) - at) * sourceSize / size;
        if (source >= sourceLimit) break;
        if (source < 0) continue;
        if (side.sources.empty()) side.first = place;
        side.sources.push_back(static_cast<std::int64_t>(source));
    }
    return side;
}

int Mix(int source, int target, int mask) { return (source * (255 - mask) + target * mask + 127) / 255; }

Colour Mix(Colour source, Colour target, Colour mask) {
    return {Mix(source.alpha, target.alpha, (mask.red + mask.green + mask.blue) / 3),
            Mix(source.red, target.red, mask.red), Mix(source.green, target.green, mask.green),
            Mix(source.blue, target.blue, mask.blue)};
}

template <class Target, class Source>
void ConvertRow(std::uint8_t* target, const std::uint8_t* source, std::span<const std::int64_t> columns) {
    for (const std::int64_t column : columns) {
        Target::Store(target, Source::Load(source + column * Source::kBytes));
        target += Target::kBytes;
    }
}

template <class Target, class Source, class Mask>
void MixRow(std::uint8_t* target, const std::uint8_t* source, const std::uint8_t* mask,
            std::span<const std::int64_t> columns) {
    for (const std::int64_t column : columns) {
        Target::Store(target, Mix(Source::Load(source + column * Source::kBytes), Target::Load(target),
                                  Mask::Load(mask + column * Mask::kBytes)));
        target += Target::kBytes;
    }
}

}  // namespace

void Draw(const PixelView& target, const PixelView& source, const PixelView* mask, const Placement& placement) {
    const auto sizeOr = [](std::int64_t size, std::int64_t own) { return size < 0 ? own : size; };
    const std::int64_t sourceWidth = sizeOr(placement.sourceWidth, source.width);
    const std::int64_t sourceHeight = sizeOr(placement.sourceHeight, source.height);
    const std::int64_t targetWidth = sizeOr(placement.targetWidth, sourceWidth);
    const std::int64_t targetHeight = sizeOr(placement.targetHeight, sourceHeight);
    const Side columns = MapSide(placement.x, targetWidth, target.width, placement.sourceX, sourceWidth, source.width);
    const Side rows = MapSide(placement.y, targetHeight, target.height, placement.sourceY, sourceHeight, source.height);

    WithPixelOf(target.depth, [&]<class Target>(Target) {
        WithPixelOf(source.depth, [&]<class Source>(Source) {
            for (std::size_t i = 0; i < rows.sources.size(); ++i) {
                std::uint8_t* to =
                    target.Row(rows.first + static_cast<std::int64_t>(i)) + columns.first * Target::kBytes;
                const std::uint8_t* from = source.Row(rows.sources[i]);
                if (mask == nullptr) {
                    ConvertRow<Target, Source>(to, from, columns.sources);
                    continue;
                }
                WithPixelOf(mask->depth, [&]<class Mask>(Mask) {
                    MixRow<Target, Source, Mask>(to, from, mask->Row(rows.sources[i]), columns.sources);
                });
            }
        });
    });
}

}  // namespace ombrix::host
