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

/// Colour by colour: `combine(x, colour)` is the new colour of pixel x.
template <class Combine>
void ForEachColour(const WordPixels& pixels, const WordFormat& format, const Combine& combine) {
    OMBRIX_INDEPENDENT_PIXELS
    for (std::int64_t x = 0; x < pixels.count; ++x) {
        const std::uint32_t word = LoadWord(pixels.source + 4 * x);
        const Rgb<int> result = combine(x, ColourOf(word, format));
        StoreWord(pixels.destination + 4 * x, (word & format.fourthMask) | WordOf(result, format));
    }
}

/// Colour by colour, with the luma of each: `combine(x, colour, luma)` is the new colour of pixel x.
template <class Combine>
void ForEachLuma(const WordPixels& pixels, const WordFormat& format, const LumaWeights& weights,
                 const Combine& combine) {
    constexpr std::int64_t kRun = 64;  // pixels, of which one near a whole number sends all the slow way
    const WholeLuma whole(weights);
    int lumas[kRun];
    for (std::int64_t first = 0; first < pixels.count; first += kRun) {
        const std::int64_t count = std::min(kRun, pixels.count - first);
        const std::uint8_t* source = pixels.source + 4 * first;
        std::uint32_t nearWhole = 0;
        for (std::int64_t i = 0; i < count; ++i) {
            const std::uint32_t sum = whole.SumOf(ColourOf(LoadWord(source + 4 * i), format));
            nearWhole |= WholeLuma::IsNearWhole(sum) ? 1 : 0;
            lumas[i] = WholeLuma::LumaOf(sum);
        }
        if (nearWhole != 0) {
            for (std::int64_t i = 0; i < count; ++i) {
                lumas[i] = weights.LumaOf(ColourOf(LoadWord(source + 4 * i), format));
            }
        }
        OMBRIX_INDEPENDENT_PIXELS
        for (std::int64_t i = 0; i < count; ++i) {
            const std::uint32_t word = LoadWord(source + 4 * i);
            const Rgb<int> result = combine(first + i, ColourOf(word, format), lumas[i]);
            StoreWord(pixels.destination + 4 * (first + i), (word & format.fourthMask) | WordOf(result, format));
        }
    }
}

/// A block of pixels, or the last few of a row as a block of their own.
class BlockOfPixels {
  public:
    BlockOfPixels(const WordPixels& pixels, std::int64_t first)
        : bytes_(static_cast<std::size_t>(4 * std::min<std::int64_t>(kBlockPixels, pixels.count - first))),
          destination_(pixels.destination + 4 * first),
          view_{pixels.source + 4 * first, At(pixels.fill, first), At(pixels.mask, first), destination_, kBlockPixels} {
        if (bytes_ == kBlockBytes) return;
        view_ = {Copied(source_, view_.source), Copied(fill_, view_.fill), Copied(mask_, view_.mask), result_,
                 kBlockPixels};
    }

    const WordPixels& View() const { return view_; }

    void Finish() const {
        if (bytes_ != kBlockBytes) std::memcpy(destination_, result_, bytes_);
    }

  private:
    static const std::uint8_t* At(const std::uint8_t* pixels, std::int64_t first) {
        return pixels ? pixels + 4 * first : nullptr;
    }
    const std::uint8_t* Copied(std::uint8_t (&copy)[kBlockBytes], const std::uint8_t* bytes) const {
        if (!bytes) return nullptr;
        std::memset(copy, 0, kBlockBytes);
        std::memcpy(copy, bytes, bytes_);
        return copy;
    }

    std::size_t bytes_;
    std::uint8_t* destination_;
    WordPixels view_;
    std::uint8_t source_[kBlockBytes];
    std::uint8_t fill_[kBlockBytes];
    std::uint8_t mask_[kBlockBytes];
    std::uint8_t result_[kBlockBytes];
};

/// Byte by byte: `combineIn(block)(place, byte)` is what a byte of a block becomes, the fourth bytes excepted.
template <class CombineIn>
void ForEachByte(const WordPixels& pixels, const WordFormat& format, const CombineIn& combineIn) {
    std::uint16_t fourth[kBlockUnits];
    for (int unit = 0; unit < kBlockUnits; ++unit) {
        fourth[unit] = static_cast<std::uint16_t>(format.fourthMask >> unit % 2 * 16);
    }
    for (std::int64_t first = 0; first < pixels.count; first += kBlockPixels) {
        const BlockOfPixels block(pixels, first);
        const WordPixels view = block.View();
        const auto combine = combineIn(view);
        OMBRIX_INDEPENDENT_PIXELS
        for (int unit = 0; unit < kBlockUnits; ++unit) {
            const std::uint16_t word = LoadUnit(view.source + 2 * unit);
            const std::uint16_t result =
                UnitOf(combine(Place{0, unit}, LowerByte(word)), combine(Place{1, unit}, UpperByte(word)));
            StoreUnit(view.destination + 2 * unit,
                      static_cast<std::uint16_t>((word & fourth[unit]) | (result & ~fourth[unit])));
        }
        block.Finish();
    }
}

}  // namespace ombrix
