#include "blend/blend_workers.h"

#include <cstring>

#include "blend/formulas.h"
#include "engine/row_walk.h"

namespace ombrix {

/// The covered pixels of one row.
struct CoveredPixels {
    const std::uint8_t* source;
    const std::uint8_t* fill;
    const std::uint8_t* mask;  ///< null without a fill mask
    std::uint8_t* destination;
    std::int64_t count;
};

using BlendKernel = void (*)(const BlendParams& params, const CoveredPixels& pixels);

/// The loops of one mode over pixels that have four bytes in all buffers, by [with opacity][with fill mask].
struct BlendKernels {
    BlendKernel byOpacityAndMask[2][2];
};

namespace {

/// Mixes by weights of 256 for 1.0; the quotient is cut.
struct OpacityMix {
    explicit OpacityMix(const BlendParams& params)
        : sourceWeight(static_cast<int>(params.sourceWeight)), fillWeight(static_cast<int>(params.fillWeight)) {}

    int sourceWeight;
    int fillWeight;

    Rgb<int> operator()(Rgb<int> s, Rgb<int> blended) const {
        return {Mix(s.red, blended.red), Mix(s.green, blended.green), Mix(s.blue, blended.blue)};
    }
    int Mix(int s, int blended) const { return (s * sourceWeight + blended * fillWeight) >> 8; }
};

/// Mixes by the fill mask, of which red alone counts: black keeps the blended colour, white brings the source back.
/// Unlike the mask of the other effects, black scales by 255/256 too: a blended 255 becomes 254.
Rgb<int> MixByFillMask(Rgb<int> s, Rgb<int> blended, int mask) {
    const auto mix = [mask](int source, int value) { return (source * mask + (255 - mask) * value) >> 8; };
    return {mix(s.red, blended.red), mix(s.green, blended.green), mix(s.blue, blended.blue)};
}

template <class Formula, bool withOpacity, bool withMask>
void BlendWords(const BlendParams& params, const CoveredPixels& covered) {
    RunAtBestLevel([&params, &covered] {
        const CoveredPixels pixels = covered;  // in registers: what is stored below could be part of the original
        const WordFormat format{PixelFormat(4)};
        const OpacityMix mixByOpacity(params);
        OMBRIX_INDEPENDENT_PIXELS
        for (std::int64_t x = 0; x < pixels.count; ++x) {
            const std::uint32_t word = LoadWord(pixels.source + 4 * x);
            const Rgb<int> colour = ColourOf(word, format);
            Rgb<int> result = Formula()(colour, ColourOf(LoadWord(pixels.fill + 4 * x), format));
            if constexpr (withOpacity) result = mixByOpacity(colour, result);
            if constexpr (withMask) {
                result = MixByFillMask(colour, result, ColourOf(LoadWord(pixels.mask + 4 * x), format).red);
            }
            StoreWord(pixels.destination + 4 * x, (word & format.fourthMask) | WordOf(result, format));
        }
    });
}

template <class Formula>
constexpr BlendKernels KernelsOf() {
    return {{{BlendWords<Formula, false, false>, BlendWords<Formula, false, true>},
             {BlendWords<Formula, true, false>, BlendWords<Formula, true, true>}}};
}

#define OMBRIX_KERNELS(name, formula) KernelsOf<formula>(),
constexpr BlendKernels kModeKernels[] = {OMBRIX_BLEND_MODES(OMBRIX_KERNELS)};
#undef OMBRIX_KERNELS
constexpr BlendKernels kNormalKernels = KernelsOf<Normal>();

/// The same for any mix of depths, a pixel at a time by the mode's proc.
void BlendAnyDepths(const BlendParams& params, const CoveredPixels& pixels, bool withOpacity) {
    const PixelFormat image(params.head.bytesPerPixel);
    const PixelFormat fillImage(static_cast<std::int32_t>(params.fillBytesPerPixel));
    const PixelFormat maskImage(pixels.mask ? params.head.maskBytesPerPixel : 4);
    const PixelFormat procs(4);
    const OpacityMix mixByOpacity(params);
    for (std::int64_t x = 0; x < pixels.count; ++x) {
        const std::uint8_t* source = pixels.source + x * image.bytesPerPixel;
        std::uint8_t* destination = pixels.destination + x * image.bytesPerPixel;
        const Rgb<int> colour = ReadColour(source, image);
        Rgb<int> result = ReadColour(pixels.fill + x * fillImage.bytesPerPixel, fillImage);
        if (params.blendProc) {
            std::uint8_t s[4] = {}, f[4] = {}, blended[4];
            WriteColour(s, procs, colour);
            WriteColour(f, procs, result);
            params.blendProc(s, f, blended);
            result = ReadColour(blended, procs);
        }
        if (withOpacity) result = mixByOpacity(colour, result);
        if (pixels.mask) {
            result = MixByFillMask(colour, result, pixels.mask[x * maskImage.bytesPerPixel + maskImage.red]);
        }
        if (image.bytesPerPixel == 4) destination[image.fourth] = source[image.fourth];
        WriteColour(destination, image, result);
    }
}

/// A worker: copies what is not covered and blends what is.
template <bool withOpacity, bool withMask>
std::int32_t BlendBand(const MPParamBlock* band) {
    auto& params = *static_cast<BlendParams*>(band->params);
    StdMPEffectParams& head = params.head;
    const std::int64_t bytes = head.bytesPerPixel;
    const std::int64_t width = head.generic.width;
    const bool allWords = bytes == 4 && params.fillBytesPerPixel == 4 && (!withMask || head.maskBytesPerPixel == 4);
    const bool coversColumns = params.regionLeft < params.regionRight;
    return ForEachRow(band, head.generic, [&](std::int64_t row) {
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
        const CoveredPixels pixels{
            .source = source + params.regionLeft * bytes,
            .fill = params.fillBase + fillRow * params.fillRowBytes + params.fillXOffset,
            .mask = withMask ? head.maskBase + fillRow * head.maskRowBytes + params.maskXOffset : nullptr,
            .destination = destination + params.regionLeft * bytes,
            .count = params.regionRight - params.regionLeft};
        if (allWords) {
            params.kernels->byOpacityAndMask[withOpacity][withMask](params, pixels);
        } else {
            BlendAnyDepths(params, pixels, withOpacity);
        }
        copy(params.regionRight, width);
    });
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
