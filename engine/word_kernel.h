// The loops over pixels of four bytes, one for each kind of formula. Each is compiled for every level of instructions,
// as part of what RunAtBestLevel is given.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>

#include "engine/lane.h"
#include "engine/luma.h"
#include "engine/pixel.h"
#include "engine/word_pixels.h"

// Tells the compiler that the pixels of a loop do not depend on each other, although source and destination may be the
// same bytes: in place, each pixel is read before it is written.
#if defined(__clang__)
#define OMBRIX_INDEPENDENT_PIXELS _Pragma("clang loop vectorize(assume_safety)")
#elif defined(__GNUC__)
#define OMBRIX_INDEPENDENT_PIXELS _Pragma("GCC ivdep")
#else
#define OMBRIX_INDEPENDENT_PIXELS
#endif

namespace ombrix {

/// The roles besides the source that a loop reads.
struct Roles {
    bool fill = false;
    bool mask = false;
};

/// `pixels` from the one at `first` on, `count` of them.
template <Roles roles>
WordPixels PartOf(const WordPixels& pixels, std::int64_t first, std::int64_t count) {
    return {pixels.source + 4 * first, roles.fill ? pixels.fill + 4 * first : nullptr,
            roles.mask ? pixels.mask + 4 * first : nullptr, pixels.destination + 4 * first, count};
}

/// Asks for what will be read soon. The processor does so by itself, but not beyond a page, and too late for loops that
/// do more than copy: brightness in place takes three fifths of the time with it. What will be written is asked for as
/// well, since it is read before (a tenth less time for a megapixel); where a buffer takes the destination's place that
/// is in vain, but costs nothing that could be measured.
template <Roles roles>
void PrefetchBehind(const WordPixels& pixels) {
    constexpr std::int64_t kAhead = 2048;  // bytes
    for (std::int64_t byte = kAhead; byte < kAhead + 4 * pixels.count; byte += kBlockBytes) {
        __builtin_prefetch(pixels.source + byte);
        if constexpr (roles.fill) __builtin_prefetch(pixels.fill + byte);
        if constexpr (roles.mask) __builtin_prefetch(pixels.mask + byte);
        if (pixels.destination != pixels.source) __builtin_prefetch(pixels.destination + byte, 1);
    }
}

/// Calls `process(run)` for runs of so many pixels, one after the other, and for what remains.
template <Roles roles, std::int64_t length, class Process>
void ForEachRun(const WordPixels& pixels, const Process& process) {
    const std::int64_t whole = pixels.count / length * length;
    for (std::int64_t first = 0; first < whole; first += length) {
        const WordPixels run = PartOf<roles>(pixels, first, length);
        PrefetchBehind<roles>(run);
        process(run);
    }
    if (whole != pixels.count) process(PartOf<roles>(pixels, whole, pixels.count - whole));
}

constexpr std::int64_t kRun = 64;  // pixels: what is kept of them stays in the nearest cache

/// Colour by colour: `combine(run, x, colour)` is the new colour of pixel x of a run.
template <Roles roles, class Combine>
void ForEachColour(const WordPixels& pixels, const WordFormat& format, const Combine& combine) {
    ForEachRun<roles, kRun>(pixels, [&combine, &format](const WordPixels& run) {
        OMBRIX_INDEPENDENT_PIXELS
        for (std::int64_t x = 0; x < run.count; ++x) {
            const std::uint32_t word = LoadWord(run.source + 4 * x);
            const Rgb<int> result = combine(run, x, ColourOf(word, format));
            StoreWord(run.destination + 4 * x, (word & format.fourthMask) | WordOf(result, format));
        }
    });
}

/// Colour by colour, by their lumas alone: `fromLuma(luma)` is what the colours with a luma become. One pixel whose sum
/// is near a whole number sends all of its run the slow way.
template <Roles roles, class FromLuma>
void ForEachLuma(const WordPixels& pixels, const WordFormat& format, const LumaWeights& weights,
                 const FromLuma& fromLuma) {
    const WholeLuma whole(weights);
    ForEachRun<roles, kRun>(pixels, [&](const WordPixels& run) {
        int lumas[kRun];
        std::uint32_t nearWhole = 0;
        for (std::int64_t x = 0; x < run.count; ++x) {
            const std::uint32_t sum = whole.SumOf(ColourOf(LoadWord(run.source + 4 * x), format));
            nearWhole |= WholeLuma::IsNearWhole(sum) ? 1 : 0;
            lumas[x] = WholeLuma::LumaOf(sum);
        }
        if (nearWhole != 0) {
            for (std::int64_t x = 0; x < run.count; ++x) {
                lumas[x] = weights.LumaOf(ColourOf(LoadWord(run.source + 4 * x), format));
            }
        }
        OMBRIX_INDEPENDENT_PIXELS
        for (std::int64_t x = 0; x < run.count; ++x) {
            const std::uint32_t word = LoadWord(run.source + 4 * x);
            const Rgb<int> result = fromLuma(lumas[x]);
            StoreWord(run.destination + 4 * x, (word & format.fourthMask) | WordOf(result, format));
        }
    });
}

/// The last pixels of a row, fewer than a block, as a block of their own.
class LastPixels {
  public:
    explicit LastPixels(const WordPixels& pixels)
        : destination_(pixels.destination), bytes_(static_cast<std::size_t>(4 * pixels.count)) {
        Copy(source_, pixels.source);
        Copy(fill_, pixels.fill);
        Copy(mask_, pixels.mask);
    }

    WordPixels Block() { return {source_, fill_, mask_, result_, kBlockPixels}; }
    void Finish() const { std::memcpy(destination_, result_, bytes_); }

  private:
    void Copy(std::uint8_t (&copy)[kBlockBytes], const std::uint8_t* bytes) const {
        if (bytes) std::memcpy(copy, bytes, bytes_);
    }

    std::uint8_t* destination_;
    std::size_t bytes_;
    std::uint8_t source_[kBlockBytes] = {};
    std::uint8_t fill_[kBlockBytes] = {};
    std::uint8_t mask_[kBlockBytes] = {};
    std::uint8_t result_[kBlockBytes];
};

/// A number from 0 to 255 for each pixel of a run, as all of its bytes need it. (Of a whole run, since g++ would make
/// single instructions of a loop over the few pixels of a block.)
class PixelWeights {
  public:
    /// `weightOf(word)` is the number of a pixel.
    template <class WeightOf>
    PixelWeights(const std::uint8_t* pixels, std::int64_t count, const WeightOf& weightOf) {
        for (std::int64_t x = 0; x < count; ++x) {
            const std::uint32_t weight = weightOf(LoadWord(pixels + 4 * x));
            StoreWord(units_ + 4 * x, weight | weight << 16);
        }
    }

    /// Those of the block that begins with pixel `first`.
    const std::uint8_t* Block(std::int64_t first) const { return units_ + 4 * first; }
    static Lane At(const std::uint8_t* block, Place place) { return {LoadUnit(block + 2 * place.unit)}; }

  private:
    alignas(kBlockBytes) std::uint8_t units_[4 * kRun];
};

/// Byte by byte: `combineIn(block, first)(place, byte)` is what a byte of a block becomes, the fourth bytes excepted.
/// The block begins with the pixel `first`.
template <Roles roles, class CombineIn>
void ForEachByte(const WordPixels& pixels, const WordFormat& format, const CombineIn& combineIn) {
    std::uint16_t fourth[kBlockUnits];
    for (std::ptrdiff_t unit = 0; unit < kBlockUnits; ++unit) {
        fourth[unit] = static_cast<std::uint16_t>(format.fourthMask >> unit % 2 * 16);
    }
    const auto process = [&combineIn, &fourth](const WordPixels& block, std::int64_t first) {
        const std::uint8_t* const source = block.source;
        std::uint8_t* const destination = block.destination;
        const auto combine = combineIn(block, first);
        OMBRIX_INDEPENDENT_PIXELS
        for (std::ptrdiff_t unit = 0; unit < kBlockUnits; ++unit) {
            const std::uint16_t word = LoadUnit(source + 2 * unit);
            const std::uint16_t result =
                UnitOf(combine(Place{0, unit}, LowerByte(word)), combine(Place{1, unit}, UpperByte(word)));
            StoreUnit(destination + 2 * unit,
                      static_cast<std::uint16_t>((word & fourth[unit]) | (result & ~fourth[unit])));
        }
    };
    const std::int64_t whole = pixels.count / kBlockPixels * kBlockPixels;
    for (std::int64_t first = 0; first < whole; first += kBlockPixels) {
        const WordPixels block = PartOf<roles>(pixels, first, kBlockPixels);
        PrefetchBehind<roles>(block);
        process(block, first);
    }
    if (whole == pixels.count) return;
    LastPixels last(PartOf<roles>(pixels, whole, pixels.count - whole));
    process(last.Block(), whole);
    last.Finish();
}

}  // namespace ombrix
