#include "blend/blend_workers.h"

#include <cstring>
#include <type_traits>

#include "blend/formulas.h"
#include "engine/instruction_level.h"
#include "engine/row_walk.h"
#include "engine/stream_copy.h"
#include "engine/word_kernel.h"

namespace ombrix {

/// The loops of one mode, by [with opacity][with fill mask].
struct BlendKernels {
    WordKernel byOpacityAndMask[2][2];
};

namespace {

/// Mixes by weights of 256 for 1.0; the quotient is cut.
struct OpacityMix {
    int sourceWeight;
    int fillWeight;

    template <class Value>
    Value Mix(Value s, Value blended) const {
        return (s * sourceWeight + blended * fillWeight) >> 8;
    }
    Rgb<int> operator()(Rgb<int> s, Rgb<int> blended) const {
        return {Mix(s.red, blended.red), Mix(s.green, blended.green), Mix(s.blue, blended.blue)};
    }
};

/// Mixes by the fill mask: black keeps the blended colour, white brings the source back. Unlike the mask of the other
/// effects, black scales by 255/256 too: a blended 255 becomes 254.
template <class Value>
Value MixByFillMask(Value s, Value blended, Value mask) {
    return (s * mask + (255 - mask) * blended) >> 8;
}

/// The fill mask, of which red alone counts, for all bytes of a block.
class BlockMask {
  public:
    BlockMask(const std::uint8_t* mask, const WordFormat& format) {
        for (int x = 0; x < kBlockPixels; ++x) {
            const auto red = static_cast<std::uint32_t>(ColourOf(LoadWord(mask + 4 * x), format).red);
            StoreWord(units_ + 4 * x, red | red << 16);
        }
    }
    Lane At(Place place) const { return {LoadUnit(units_ + 2 * place.unit)}; }

  private:
    alignas(kBlockBytes) std::uint8_t units_[kBlockBytes];
};

struct NoMask {
    NoMask(const std::uint8_t*, const WordFormat&) {}
};

template <class Formula>
concept WorksOnBytes = requires(Formula formula, Lane lane) {
    formula.OfBytes(lane, lane);
};

template <class Formula, bool withOpacity, bool withMask>
void RunBlend(const void* opacityMix, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([opacityMix, &pixelsOfCall] {
        // In registers: what is stored below could be part of the originals.
        const OpacityMix mix = *static_cast<const OpacityMix*>(opacityMix);
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format{PixelFormat(4)};
        if constexpr (WorksOnBytes<Formula>) {
            ForEachByte(pixels, format, [&mix, &format](const WordPixels& block) {
                const std::conditional_t<withMask, BlockMask, NoMask> mask(block.mask, format);
                return [&mix, mask, fill = block.fill](Place place, Lane s) {
                    const std::uint16_t unit = LoadUnit(fill + 2 * place.unit);
                    Lane result = Formula().OfBytes(s, place.half == 0 ? LowerByte(unit) : UpperByte(unit));
                    if constexpr (withOpacity) result = mix.Mix(s, result);
                    if constexpr (withMask) result = MixByFillMask(s, result, mask.At(place));
                    return result;
                };
            });
        } else {
            ForEachColour(pixels, format, [&pixels, &format, &mix](std::int64_t x, Rgb<int> s) {
                Rgb<int> result = Formula()(s, ColourOf(LoadWord(pixels.fill + 4 * x), format));
                if constexpr (withOpacity) result = mix(s, result);
                if constexpr (withMask) {
                    const int mask = ColourOf(LoadWord(pixels.mask + 4 * x), format).red;
                    result = {MixByFillMask(s.red, result.red, mask), MixByFillMask(s.green, result.green, mask),
                              MixByFillMask(s.blue, result.blue, mask)};
                }
                return result;
            });
        }
    });
}

template <class Formula>
constexpr BlendKernels KernelsOf() {
    return {{{RunBlend<Formula, false, false>, RunBlend<Formula, false, true>},
             {RunBlend<Formula, true, false>, RunBlend<Formula, true, true>}}};
}

#define OMBRIX_KERNELS(name, formula) KernelsOf<formula>(),
constexpr BlendKernels kModeKernels[] = {OMBRIX_BLEND_MODES(OMBRIX_KERNELS)};
#undef OMBRIX_KERNELS
constexpr BlendKernels kNormalKernels = KernelsOf<Normal>();

/// A worker: copies what is not covered and blends what is.
template <bool withOpacity, bool withMask>
std::int32_t BlendBand(const MPParamBlock* band) {
    auto& params = *static_cast<BlendParams*>(band->params);
    StdMPEffectParams& head = params.head;
    const std::int64_t bytes = head.bytesPerPixel;
    const std::int64_t width = head.generic.width;
    const bool coversColumns = params.regionLeft < params.regionRight;
    const WordKernel kernel = params.kernels->byOpacityAndMask[withOpacity][withMask];
    const OpacityMix mix{static_cast<int>(params.sourceWeight), static_cast<int>(params.fillWeight)};
    const bool isStreamed = ShouldStream(head);
    ForEachRow(band, head.generic, [&](std::int64_t row) {
        const std::uint8_t* source = head.srcBase + row * head.srcRowBytes;
        std::uint8_t* destination = head.dstBase + row * head.dstRowBytes;
        const auto copy = [&](std::int64_t from, std::int64_t to) {
            if (from < to) std::memcpy(destination + from * bytes, source + from * bytes, (to - from) * bytes);
        };
        if (row < params.regionTop || row >= params.regionBottom || !coversColumns) {
            copy(0, width);
            return;
        }
        copy(0, params.regionLeft);
        const std::int64_t fillRow = row - params.fillOriginY;
        RowJob job{.source = {source + params.regionLeft * bytes, head.bytesPerPixel},
                   .fill = {params.fillBase + fillRow * params.fillRowBytes + params.fillXOffset,
                            static_cast<std::int32_t>(params.fillBytesPerPixel)},
                   .destination = destination + params.regionLeft * bytes,
                   .count = params.regionRight - params.regionLeft,
                   .isStreamed = isStreamed};
        if (withMask) {
            job.mask = {head.maskBase + fillRow * head.maskRowBytes + params.maskXOffset, head.maskBytesPerPixel};
        }
        WalkRow(job, kernel, &mix);
        copy(params.regionRight, width);
    });
    if (isStreamed) StreamFence();
    return 0;
}

}  // namespace

const BlendKernels* FindBlendKernels(std::int32_t mode) {
    return mode == kNormalMode ? &kNormalKernels : &kModeKernels[BlendHandlerIndex(mode)];
}

std::int32_t BlendPart(MPParamBlock* band) { return BlendBand<true, false>(band); }
std::int32_t BlendMaskedPart(MPParamBlock* band) { return BlendBand<true, true>(band); }
std::int32_t BlendSpecialPart(MPParamBlock* band) { return BlendBand<true, false>(band); }
std::int32_t BlendSpecialPartNoOpacity(MPParamBlock* band) { return BlendBand<false, false>(band); }
std::int32_t BlendSpecialMaskedPart(MPParamBlock* band) { return BlendBand<true, true>(band); }
std::int32_t BlendSpecialMaskedPartNoOpacity(MPParamBlock* band) { return BlendBand<false, true>(band); }

}  // namespace ombrix
