// The loops over pixels of four bytes, one for each kind of formula. Each is compiled for every level of instructions,
// as part of what RunAtBestLevel is given.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <type_traits>

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

/// Calls `process(run, first)` for runs of so many pixels, which begin with the pixel `first`. Returns how many pixels
/// those are; fewer than a run remain.
template <Roles roles, std::int64_t length, class Process>
std::int64_t ForEachFullRun(const WordPixels& pixels, const Process& process) {
    const std::int64_t whole = pixels.count / length * length;
    for (std::int64_t first = 0; first < whole; first += length) {
        const WordPixels run = PartOf<roles>(pixels, first, length);
        PrefetchBehind<roles>(run);
        process(run, first);
    }
    return whole;
}

/// Calls `process(run)` for runs of so many pixels, and for what remains.
template <Roles roles, std::int64_t length, class Process>
void ForEachRun(const WordPixels& pixels, const Process& process) {
    const std::int64_t whole =
        ForEachFullRun<roles, length>(pixels, [&process](const WordPixels& run, std::int64_t) { process(run); });
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

/// The last pixels of a row, fewer than `length`, as so many.
template <std::int64_t length>
class LastPixels {
  public:
    explicit LastPixels(const WordPixels& pixels)
        : destination_(pixels.destination), bytes_(static_cast<std::size_t>(4 * pixels.count)) {
        Copy(source_, pixels.source);
        Copy(fill_, pixels.fill);
        Copy(mask_, pixels.mask);
    }

    WordPixels Filled() { return {source_, fill_, mask_, result_, length}; }
    void Finish() const { std::memcpy(destination_, result_, bytes_); }

  private:
    void Copy(std::uint8_t (&copy)[4 * length], const std::uint8_t* bytes) const {
        if (bytes) std::memcpy(copy, bytes, bytes_);
    }

    std::uint8_t* destination_;
    std::size_t bytes_;
    std::uint8_t source_[4 * length] = {};
    std::uint8_t fill_[4 * length] = {};
    std::uint8_t mask_[4 * length] = {};
    std::uint8_t result_[4 * length];
};

/// Calls `process(run, first)` for runs of so many pixels; what remains is made as long.
template <Roles roles, std::int64_t length, class Process>
void ForEachWholeRun(const WordPixels& pixels, const Process& process) {
    const std::int64_t whole = ForEachFullRun<roles, length>(pixels, process);
    if (whole == pixels.count) return;
    LastPixels<length> last(PartOf<roles>(pixels, whole, pixels.count - whole));
    process(last.Filled(), whole);
    last.Finish();
}

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

/// The bits of a pixel's fourth byte, as units of a block see them.
template <class Unit>
class FourthBytes {
  public:
    explicit FourthBytes(const WordFormat& format) {
        for (std::size_t i = 0; i < kCount; ++i) {
            bits_[i] = static_cast<Unit>(format.fourthMask >> i * 8 * sizeof(Unit) % 32);
        }
    }

    /// A unit with the fourth bytes of one and the colours of the other.
    Unit Of(Unit source, Unit colours, std::size_t unit) const {
        return static_cast<Unit>((source & bits_[unit]) | (colours & ~bits_[unit]));
    }

  private:
    static constexpr std::size_t kCount = kBlockBytes / sizeof(Unit);
    alignas(kBlockBytes) Unit bits_[kCount];
};

/// What becomes of a block by a callable of (Place, Lane), or of (std::size_t, std::uint8_t) with the byte's place in
/// the block: two forms of one thing, in 16 bits and in 8. The fourth bytes stay.
template <class Combine>
class BlockCombiner {
  public:
    static constexpr bool isInBytes = std::is_invocable_v<const Combine&, std::size_t, std::uint8_t>;

    explicit BlockCombiner(const WordFormat& format) : fourth_(format) {}

    void operator()(const std::uint8_t* source, std::uint8_t* destination, const Combine& combine) const {
        if constexpr (isInBytes) {
            OMBRIX_INDEPENDENT_PIXELS
            for (std::size_t byte = 0; byte < kBlockBytes; ++byte) {
                destination[byte] = fourth_.Of(source[byte], combine(byte, source[byte]), byte);
            }
        } else {
            OMBRIX_INDEPENDENT_PIXELS
            for (std::ptrdiff_t unit = 0; unit < kBlockUnits; ++unit) {
                const std::uint16_t word = LoadUnit(source + 2 * unit);
                const std::uint16_t result =
                    UnitOf(combine(Place{0, unit}, LowerByte(word)), combine(Place{1, unit}, UpperByte(word)));
                StoreUnit(destination + 2 * unit, fourth_.Of(word, result, static_cast<std::size_t>(unit)));
            }
        }
    }

  private:
    FourthBytes<std::conditional_t<isInBytes, std::uint8_t, std::uint16_t>> fourth_;
};

/// Byte by byte: `combineIn(block, first)` is a callable that BlockCombiner takes. The block begins with the pixel
/// `first`.
template <Roles roles, class CombineIn>
void ForEachByte(const WordPixels& pixels, const WordFormat& format, const CombineIn& combineIn) {
    using Combine = std::remove_cvref_t<std::invoke_result_t<const CombineIn&, const WordPixels&, std::int64_t>>;
    const BlockCombiner<Combine> combiner(format);
    ForEachWholeRun<roles, kBlockPixels>(pixels, [&combineIn, &combiner](const WordPixels& block, std::int64_t first) {
        combiner(block.source, block.destination, combineIn(block, first));
    });
}

/// Colour by colour, by their lumas alone: pixels become grey, and their bytes what `combine` makes of them, a callable
/// that BlockCombiner takes. One pixel whose sum is near a whole number sends all of its run the slow way.
template <Roles roles, class Combine>
void ForEachLuma(const WordPixels& pixels, const WordFormat& format, const LumaWeights& weights,
                 const Combine& combine) {
    const WholeLuma whole(weights);
    const BlockCombiner<Combine> combiner(format);
    // A factor that g++ does not know: it would make two shifts and two sums of the product, which take a tenth longer.
    const std::uint32_t inAllBytes = 0x01010101u + kHiddenZero;
    const auto greyOf = [fourthMask = format.fourthMask, inAllBytes](std::uint32_t word, int luma) {
        const std::uint32_t grey = static_cast<std::uint32_t>(luma) * inAllBytes;
        return (word & fourthMask) | (grey & ~fourthMask);
    };
    ForEachWholeRun<roles, kRun>(pixels, [&](const WordPixels& run, std::int64_t) {
        alignas(kBlockBytes) std::uint8_t greys[4 * kRun];
        std::uint32_t aboveWhole = ~0u;
        for (std::int64_t x = 0; x < kRun; ++x) {
            const std::uint32_t word = LoadWord(run.source + 4 * x);
            const std::uint32_t sum = whole.SumOf(ColourOf(word, format));
            aboveWhole = std::min(aboveWhole, WholeLuma::AboveWhole(sum));
            StoreWord(greys + 4 * x, greyOf(word, WholeLuma::LumaOf(sum)));
        }
        if (WholeLuma::IsNearWhole(aboveWhole)) {
            for (std::int64_t x = 0; x < kRun; ++x) {
                const std::uint32_t word = LoadWord(run.source + 4 * x);
                StoreWord(greys + 4 * x, greyOf(word, weights.LumaOf(ColourOf(word, format))));
            }
        }
        for (std::ptrdiff_t block = 0; block < 4 * kRun; block += kBlockBytes) {
            combiner(greys + block, run.destination + block, combine);
        }
    });
}

}  // namespace ombrix
