// What is done with a formula's result before it is stored: nothing, or a mix with the source by opacity or a mask.
#pragma once

#include "pixels/lanes.h"
#include "pixels/row.h"

namespace ombrix {
inline namespace OMBRIX_LEVEL {

/// Calls a mix of 16-bit numbers for the lower and for the upper bytes.
template <class Mix, class... Operand>
inline U8 MixBytes(const Mix& mix, Operand... bytes) {
    return Bytes(mix(LowerBytes(bytes)...), mix(UpperBytes(bytes)...));
}

struct NoMix {
    static constexpr bool readsMask = false;

    explicit NoMix(const RowSettings&) {}
    U8 operator()(U8 /*source*/, U8 /*mask*/, U8 result) const { return result; }
};

/// Weights of 256 for 1.0; the sum is cut.
class OpacityMix {
  public:
    static constexpr bool readsMask = false;

    explicit OpacityMix(const RowSettings& settings)
        : sourceWeight_(Same<U16>(settings.sourceWeight)), fillWeight_(Same<U16>(settings.fillWeight)) {}

    U8 operator()(U8 source, U8 /*mask*/, U8 result) const {
        return MixBytes([this](U16 s, U16 r) { return (s * sourceWeight_ + r * fillWeight_) >> 8; }, source, result);
    }

  private:
    U16 sourceWeight_;
    U16 fillWeight_;
};

/// The mask of a tone or colour effect. A mask pixel that is black lets the whole effect through. Any other weighs each
/// channel by the mask's same channel and divides by 256, not 255: a white mask pixel gives one less than the source.
class EffectMaskMix {
  public:
    static constexpr bool readsMask = true;

    explicit EffectMaskMix(const RowSettings& settings) : colours_(~ByteOfWords(settings.format.fourth)) {}

    U8 operator()(U8 source, U8 mask, U8 result) const {
        // 0xffff, that is -1, where the mask is black: the effect's weight becomes 256.
        const U16 black = reinterpret_cast<U16>(reinterpret_cast<I32>(mask & colours_) == 0);
        const auto mix = [black](U16 s, U16 m, U16 r) { return (s * m + r * (255 - m - black)) >> 8; };
        return MixBytes(mix, source, mask, result);
    }

  private:
    U8 colours_;
};

/// The fill mask of the compositor, after opacity. Only its red counts: black keeps the blended colour and white brings
/// the source back, both scaled by 255/256.
class FillMaskMix {
  public:
    static constexpr bool readsMask = true;

    explicit FillMaskMix(const RowSettings& settings) : opacity_(settings), shift_(8 * settings.format.red) {}

    U8 operator()(U8 source, U8 mask, U8 result) const {
        const U32 red = reinterpret_cast<U32>(mask) >> shift_ & 0xff;
        const U16 weight = reinterpret_cast<U16>(red | red << 16);
        return MixBytes([weight](U16 s, U16 r) { return (s * weight + r * (255 - weight)) >> 8; }, source,
                        opacity_(source, mask, result));
    }

  private:
    OpacityMix opacity_;
    int shift_;
};

}  // namespace OMBRIX_LEVEL
}  // namespace ombrix
