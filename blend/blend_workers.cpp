#include "blend/blend_workers.h"

#include <cstring>
#include <type_traits>

#include "blend/formulas.h"
#include "engine/instruction_level.h"
#include "engine/row_walk.h"
#include "engine/stream_copy.h"
#include "engine/word_kernel.h"

namespace ombrix {

/// The loops of one mode.
struct BlendKernels {
    void (*run)(const void*, const WordPixels&);
};

namespace {

template <class Formula>
concept WorksOnBytes = requires(Formula formula, Lane lane) { formula.OfBytes(lane, lane); };

/// The loop of a mode, before opacity and mask.
template <class Formula>
void RunMode(const void* /*formula*/, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([&pixelsOfCall] {
        const WordPixels pixels = pixelsOfCall;  // in registers: what is stored below could be part of the original
        const WordFormat format{PixelFormat(4)};
        constexpr Roles roles{.fill = true};
        if constexpr (WorksOnBytes<Formula>) {
            ForEachByte<roles>(pixels, format, [](const WordPixels& block) {
                return [fill = block.fill](Place place, Lane source) {
                    return Formula().OfBytes(source, ByteAt(fill, place));
                };
            });
        } else {
            ForEachColour<roles>(pixels, format, [&format](const WordPixels& run, std::int64_t x, Rgb<int> source) {
                return Formula()(source, ColourOf(LoadWord(run.fill + 4 * x), format));
            });
        }
    });
}

#define OMBRIX_KERNEL(name, formula) {RunMode<formula>},
constexpr BlendKernels kModeKernels[] = {OMBRIX_BLEND_MODES(OMBRIX_KERNEL)};
#undef OMBRIX_KERNEL
constexpr BlendKernels kNormalKernels = {RunMode<Normal>};

/// Weights of 256 for 1.0.
struct Opacity {
    int sourceWeight;
    int fillWeight;
};

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

/// Mixes what a mode made, given as the fill, with the source: by the opacity, its quotients cut, then by the mask. Of
/// that, black keeps the blended colour and white brings the source back. Unlike the mask of the other effects, black
/// scales by 255/256 too: a blended 255 becomes 254.
template <bool withOpacity, bool withMask>
void MixBlended(const void* opacityAddress, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([opacityAddress, &pixelsOfCall] {
        const auto opacity = *static_cast<const Opacity*>(opacityAddress);
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format{PixelFormat(4)};
        ForEachByte<Roles{.fill = true, .mask = withMask}>(pixels, format, [&](const WordPixels& block) {
            const std::conditional_t<withMask, BlockMask, NoMask> mask(block.mask, format);
            return [&opacity, mask, fill = block.fill](Place place, Lane source) {
                Lane result = ByteAt(fill, place);
                if constexpr (withOpacity) result = (source * opacity.sourceWeight + result * opacity.fillWeight) >> 8;
                if constexpr (withMask) result = (source * mask.At(place) + (255 - mask.At(place)) * result) >> 8;
                return result;
            };
        });
    });
}

/// A worker: copies what is not covered and blends what is.
template <bool withOpacity, bool withMask>
std::int32_t BlendBand(const MPParamBlock* band) {
    auto& params = *static_cast<BlendParams*>(band->params);
    StdMPEffectParams& head = params.head;
    const std::int64_t bytes = head.bytesPerPixel;
    const std::int64_t width = head.generic.width;
    const bool coversColumns = params.regionLeft < params.regionRight;
    const WordKernel kernel{params.kernels->run};
    const Opacity opacity{static_cast<int>(params.sourceWeight), static_cast<int>(params.fillWeight)};
    const WordKernel mix = withOpacity || withMask ? WordKernel{MixBlended<withOpacity, withMask>, &opacity} : WordKernel{};
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
        WalkRow(job, kernel, mix);
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
