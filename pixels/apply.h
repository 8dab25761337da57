// Applies formulas to vectors of pixels, one way for each kind of formula. The fourth bytes that come out mean nothing.
#pragma once

#include "pixels/grey.h"
#include "pixels/lanes.h"
#include "pixels/row.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

template <class Formula, class V, class... Fill>
inline V ApplyToLanes(const Formula& formula, const Channels<V>& channels, V source, Fill... fill) {
    if constexpr (Formula::tellsChannelsApart) {
        return formula(source, fill..., channels);
    } else {
        return formula(source, fill...);
    }
}

/// Applies a formula by channel to bytes as they lie.
template <class Formula, class... Fill>
inline U8 ApplyToBytes(const Formula& formula, const Lanes& lanes, U8 source, Fill... fill) {
    if constexpr (Formula::staysInBytes) {
        return ApplyToLanes(formula, lanes.ofBytes, source, fill...);
    } else {
        return Bytes(ApplyToLanes(formula, lanes.ofLower, LowerBytes(source), LowerBytes(fill)...),
                     ApplyToLanes(formula, lanes.ofUpper, UpperBytes(source), UpperBytes(fill)...));
    }
}

/// A formula with what its kind needs for pixels of 4 bytes.
template <class Formula, class Kind = typename Formula::Kind>
class Applied;

template <class Formula>
class Applied<Formula, ByChannel> {
  public:
    Applied(const Formula& formula, const PixelFormat& format) : formula_(formula), lanes_(LanesOfWords(format)) {}

    template <class... Fill>
    U8 operator()(U8 source, Fill... fill) const {
        return ApplyToBytes(formula_, lanes_, source, fill...);
    }

  private:
    Formula formula_;
    Lanes lanes_;
};

/// The channels of pixels of 4 bytes.
inline Rgb<I32> ColoursOf(U8 pixels, const PixelFormat& format) {
    const auto channel = [pixels](int position) {
        return reinterpret_cast<I32>(reinterpret_cast<U32>(pixels) >> 8 * position & 0xff);
    };
    return {channel(format.red), channel(format.green), channel(format.blue)};
}

/// `greys`, but computed in doubles in the wanted lanes: colours, not greys, whose sum is whole. One in a thousand.
[[gnu::noinline]] inline I32 WholeGreys(I32 greys, I32 isWanted, U8 source, const GreyWeights* weights,
                                        PixelFormat format) {
    return isWanted ? weights->Of(ColoursOf(source, format)) : greys;
}

template <class Formula>
class Applied<Formula, ByGrey> {
  public:
    Applied(const Formula& formula, const PixelFormat& format)
        : formula_(formula),
          weights_(formula.weights),
          original_(&formula.weights),
          format_(format),
          lanes_(LanesOfWords(format)),
          lowerWeights_(lanes_.ofLower(formula.weights.whole)),
          upperWeights_(lanes_.ofUpper(formula.weights.whole)),
          // Rounded up, so that whole quotients come out whole.
          reciprocal_(F32{} + 1.0f / static_cast<float>(formula.weights.divisor) * (1.0f + 0x1p-23f)) {}

    U8 operator()(U8 source) const { return ApplyToBytes(formula_, lanes_, InAllBytes(GreysOf(source))); }

  private:
    I32 GreysOf(U8 source) const {
        const I32 sums = PairSums(LowerBytes(source), lowerWeights_) + PairSums(UpperBytes(source), upperWeights_);
        const I32 greys = __builtin_convertvector(__builtin_convertvector(sums, F32) * reciprocal_, I32);
        if (!weights_.AreInDoubles()) return greys;
        const I32 product = Product(greys, Same<I32>(weights_.divisor));
        const I32 isWhole = product == sums;
        if (!Any(isWhole)) return greys;
        return RoundedAsDoubles(greys, isWhole, source);
    }

    /// Corrects whole sums, the only ones that can fall short in doubles: greys by a table, other colours in doubles.
    I32 RoundedAsDoubles(I32 greys, I32 isWhole, U8 source) const {
        const U8 colours = lanes_.ofBytes.red | lanes_.ofBytes.green | lanes_.ofBytes.blue;
        const I32 isGrey = reinterpret_cast<I32>((InAllBytes(greys) ^ source) & colours) == 0;
        const I32 rounded = greys - (isGrey & BitsOf(weights_.fallen, greys));
        const I32 others = isWhole & ~isGrey;
        return Any(others) ? WholeGreys(rounded, others, source, original_, format_) : rounded;
    }

    /// The lowest byte of each lane in all of its bytes.
    static U8 InAllBytes(I32 greys) {
#if defined(OMBRIX_HAS_BYTE_SHUFFLE)
        return Shuffled(reinterpret_cast<U8>(greys), std::make_integer_sequence<int, kVectorBytes>());
#else
        const I32 twice = greys | greys << 8;
        return reinterpret_cast<U8>(twice | twice << 16);
#endif
    }
    template <int... i>
    static U8 Shuffled(U8 bytes, std::integer_sequence<int, i...>) {
        return __builtin_shufflevector(bytes, bytes, (i / 4 * 4)...);
    }

    Formula formula_;
    GreyWeights weights_;
    const GreyWeights* original_;  ///< passed on by address, which the copy's must not be: it is kept in registers
    PixelFormat format_;
    Lanes lanes_;
    U16 lowerWeights_;
    U16 upperWeights_;
    F32 reciprocal_;
};

template <class Formula>
class Applied<Formula, ByColour> {
  public:
    Applied(const Formula& formula, const PixelFormat& format) : formula_(formula), format_(format) {}

    template <class... Fill>
    U8 operator()(U8 source, Fill... fill) const {
        const Rgb<I32> result = formula_(ColoursOf(source, format_), ColoursOf(fill, format_)...);
        return reinterpret_cast<U8>(result.red << 8 * format_.red | result.green << 8 * format_.green |
                                    result.blue << 8 * format_.blue);
    }

  private:
    Formula formula_;
    PixelFormat format_;
};

template <class Formula>
class Applied<Formula, ByTable> {
  public:
#if defined(OMBRIX_HAS_BYTE_PERMUTATION)
    Applied(const Formula& formula, const PixelFormat& format)
        : tables_{Table(formula.tables.red), Table(formula.tables.green), Table(formula.tables.blue)},
          lanes_(LanesOfWords(format)) {}

    U8 operator()(U8 source) const {
        return (LookUp(tables_.red, source) & lanes_.ofBytes.red) |
               (LookUp(tables_.green, source) & lanes_.ofBytes.green) |
               (LookUp(tables_.blue, source) & lanes_.ofBytes.blue);
    }

  private:
    Rgb<Table> tables_;
    Lanes lanes_;
#else
    Applied(const Formula& formula, const PixelFormat& format) : tables_(formula.tables), format_(format) {}

    /// One byte after the other. (clang would not inline this by itself.)
    [[gnu::always_inline]] U8 operator()(U8 source) const {
        std::uint8_t bytes[kVectorBytes];
        Store(bytes, source);
        for (int pixel = 0; pixel < kVectorBytes; pixel += 4) {
            std::uint8_t& red = bytes[pixel + format_.red];
            std::uint8_t& green = bytes[pixel + format_.green];
            std::uint8_t& blue = bytes[pixel + format_.blue];
            red = tables_.red[red];
            green = tables_.green[green];
            blue = tables_.blue[blue];
        }
        return Load<U8>(bytes);
    }

  private:
    Rgb<const std::uint8_t*> tables_;
    PixelFormat format_;
#endif
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
