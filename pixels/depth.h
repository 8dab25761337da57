// Between pixels of 3 bytes and pixels of 4.
#pragma once

#include "pixels/row.h"
#include "pixels/vector.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

class DepthChange {
  public:
    explicit DepthChange(const PixelFormat& format) : below_((std::uint32_t{1} << 8 * format.fourth) - 1) {
        for (int i = 0; i < kVectorBytes; ++i) {
            const int pixel = i % 16 / 4;
            const int byte = i % 4;
            widening_[i] =
                static_cast<std::uint8_t>(byte == format.fourth ? 0x80 : 3 * pixel + byte - (byte > format.fourth));
            const int triple = i % 16 / 3;
            const int third = i % 16 % 3;
            narrowing_[i] = static_cast<std::uint8_t>(
                triple == 5 || triple == 4 ? 0x80 : 4 * triple + third + (third >= format.fourth));
        }
    }

    /// Reads 3 * count bytes and writes 4 * count. Fourth bytes become 0.
    void Widen(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) const {
        std::int64_t x = 0;
#if defined(OMBRIX_HAS_BYTE_SHUFFLE)
        const U8 order = widening_;
        for (; count - x >= kVectorPixels + 2; x += kVectorPixels) {  // 16 bytes are read for the last 12
            Store(to + 4 * x, ShuffleSixteens(LoadTwelves(from + 3 * x), order));
        }
#endif
        for (; x + 1 < count; ++x) Store(to + 4 * x, Widened(Load<std::uint32_t>(from + 3 * x)));
        if (x == count) return;
        const std::uint8_t* last = from + 3 * x;  // a word would reach beyond it
        Store(to + 4 * x, Widened(last[0] | std::uint32_t{last[1]} << 8 | std::uint32_t{last[2]} << 16));
    }

    /// Reads 4 * count bytes and writes 3 * count, and up to kSlack more that mean nothing. Fourth bytes are lost.
    void Narrow(const std::uint8_t* from, std::uint8_t* to, std::int64_t count) const {
        std::int64_t x = 0;
#if defined(OMBRIX_HAS_BYTE_SHUFFLE)
        const U8 order = narrowing_;
        for (; count - x >= kVectorPixels; x += kVectorPixels) {
            StoreTwelves(to + 3 * x, ShuffleSixteens(Load<U8>(from + 4 * x), order));
        }
#endif
        for (; x < count; ++x) {
            const auto word = Load<std::uint32_t>(from + 4 * x);
            Store(to + 3 * x, (word & below_) | (word >> 8 & ~below_));
        }
    }
    static constexpr int kSlack = 4;  // bytes

  private:
    std::uint32_t Widened(std::uint32_t word) const { return (word & below_) | ((word & ~below_ & 0xffffff) << 8); }

    std::uint32_t below_;  ///< the bits before the fourth byte
    U8 widening_;
    U8 narrowing_;
};

#if defined(OMBRIX_HAS_BYTE_PERMUTATION)
constexpr bool kHasTriplePermutation = true;

/// 64 pixels of 3 bytes, in three vectors, as four vectors of pixels of 4 bytes. Fourth bytes mean nothing.
class TriplePermutation {
  public:
    explicit TriplePermutation(const PixelFormat& format) {
        int positions[3];
        for (int byte = 0, third = 0; byte < 4; ++byte) {
            if (byte != format.fourth) positions[third++] = byte;
        }
        for (int i = 0; i < kVectorBytes; ++i) {
            const int third = i % 4 - (i % 4 > format.fourth);
            widening_[i] = static_cast<std::uint8_t>(i / 4 * 3 + third);
            for (int k = 0; k < 3; ++k) {
                const int byte = kVectorBytes * k + i;
                narrowing_[k][i] = static_cast<std::uint8_t>((byte / 3 * 4 + positions[byte % 3]) % kVectorBytes);
            }
        }
    }

    /// Reads no byte beyond the three vectors.
    void Widen(const std::uint8_t* triples, U8 (&words)[4]) const {
        for (int k = 0; k < 3; ++k) words[k] = Permuted(Load<U8>(triples + std::ptrdiff_t{48} * k), widening_);
        words[3] = Permuted(Load<U8>(triples + 128), widening_ + 16);
    }
    void Narrow(const U8 (&words)[4], U8 (&triples)[3]) const {
        triples[0] = PermutedFrom<48>(Permuted(words[0], narrowing_[0]), words[1], narrowing_[0]);
        triples[1] = PermutedFrom<32>(Permuted(words[1], narrowing_[1]), words[2], narrowing_[1]);
        triples[2] = PermutedFrom<16>(Permuted(words[2], narrowing_[2]), words[3], narrowing_[2]);
    }

  private:
    U8 widening_;
    U8 narrowing_[3];
};
#else
constexpr bool kHasTriplePermutation = false;
#endif

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
