#include "blend/blend_workers.h"

#include <cstring>
#include <type_traits>

#include "blend/formulas.h"
#include "engine/instruction_level.h"
#include "engine/row_walk.h"
#include "engine/stream_copy.h"
#include "engine/word_kernel.h"

namespace ombrix {
namespace {

template <class Formula>
concept WorksOnBytes = requires(Formula formula, Lane lane) {
    formula.OfBytes(lane, lane);
};

template <class Formula>
concept HasLoopForm = requires {
    typename Formula::template InLoops<PlainDivision>;
};

/// The form of a formula for a level.
template <class Mode, class Level>
auto FormulaAt(Level) {
    if constexpr (HasLoopForm<Mode>) {
        using Division = std::conditional_t<Level::hasFusedMultiplyAdd, FusedDivision, PlainDivision>;
        return typename Mode::template InLoops<Division>();
    } else {
        return Mode();
    }
}

/// The loop of a mode, before opacity and mask.
template <class Mode>
void RunMode(const void* /*formula*/, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([&pixelsOfCall](auto level) {
        using Formula = decltype(FormulaAt<Mode>(level));
        const WordPixels pixels = pixelsOfCall;  // in registers: what is stored below could be part of the original
        const WordFormat format;
        constexpr Roles roles{.fill = true};
        if constexpr (WorksOnBytes<Formula>) {
            ForEachByte<roles>(pixels, format, [](const WordPixels& block, std::int64_t) {
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

#define OMBRIX_LOOP(name, formula) RunMode<formula>,
constexpr WordLoop kModeLoops[] = {OMBRIX_BLEND_MODES(OMBRIX_LOOP)};
#undef OMBRIX_LOOP

/// Weights of 256 for 1.0; what they mix is cut.
struct Opacity {
    int sourceWeight;
    int fillWeight;

    Lane Mix(Lane source, Lane blended) const { return (source * sourceWeight + blended * fillWeight) >> 8; }
};

/// Mixes what a mode made, given as the fill, with the source.
void MixByOpacity(const void* opacityAddress, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([opacityAddress, &pixelsOfCall] {
        const auto opacity = *static_cast<const Opacity*>(opacityAddress);
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format;
        ForEachByte<Roles{.fill = true}>(pixels, format, [&opacity](const WordPixels& block, std::int64_t) {
            return [&opacity, fill = block.fill](Place place, Lane source) {
                return opacity.Mix(source, ByteAt(fill, place));
            };
        });
    });
}

/// The same, and then by the fill mask, of which red alone counts: black keeps the blended colour, white brings the
/// source back. Unlike the mask of the other effects, black scales by 255/256 too: a blended 255 becomes 254.
template <bool withOpacity>
void MixByFillMask(const void* opacityAddress, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([opacityAddress, &pixelsOfCall] {
        const auto opacity = *static_cast<const Opacity*>(opacityAddress);
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format;
        static constexpr Roles roles{.fill = true, .mask = true};
        ForEachRun<roles, kRun>(pixels, [&format, &opacity](const WordPixels& run) {
            const PixelWeights weights(run.mask, run.count,
                                       [red = format.red](std::uint32_t mask) { return mask >> red & 0xff; });
            ForEachByte<roles>(run, format, [&](const WordPixels& block, std::int64_t first) {
                return [&opacity, mask = weights.Block(first), fill = block.fill](Place place, Lane source) {
                    Lane result = ByteAt(fill, place);
                    if constexpr (withOpacity) result = opacity.Mix(source, result);
                    const Lane weight = PixelWeights::At(mask, place);
                    return (source * weight + (255 - weight) * result) >> 8;
                };
            });
        });
    });
}

template <bool withOpacity, bool withMask>
WordKernel MixOf(const Opacity& opacity) {
    if constexpr (withMask) return {MixByFillMask<withOpacity>, &opacity};
    if constexpr (withOpacity) return {MixByOpacity, &opacity};
    return {};
}

/// A worker: copies what is not covered and blends what is.
template <bool withOpacity, bool withMask>
std::int32_t BlendBand(const MPParamBlock* band) {
    auto& params = *static_cast<BlendParams*>(band->params);
    StdMPEffectParams& head = params.head;
    const std::int64_t bytes = head.bytesPerPixel;
    const std::int64_t width = head.generic.width;
    const bool coversColumns = params.regionLeft < params.regionRight;
    const WordKernel kernel{params.loop};
    const Opacity opacity{static_cast<int>(params.sourceWeight), static_cast<int>(params.fillWeight)};
    const WordKernel mix = MixOf<withOpacity, withMask>(opacity);
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

WordLoop FindBlendLoop(std::int32_t mode) {
    return mode == kNormalMode ? RunMode<Normal> : kModeLoops[BlendHandlerIndex(mode)];
}

std::int32_t BlendPart(MPParamBlock* band) { return BlendBand<true, false>(band); }
std::int32_t BlendMaskedPart(MPParamBlock* band) { return BlendBand<true, true>(band); }
std::int32_t BlendSpecialPart(MPParamBlock* band) { return BlendBand<true, false>(band); }
std::int32_t BlendSpecialPartNoOpacity(MPParamBlock* band) { return BlendBand<false, false>(band); }
std::int32_t BlendSpecialMaskedPart(MPParamBlock* band) { return BlendBand<true, true>(band); }
std::int32_t BlendSpecialMaskedPartNoOpacity(MPParamBlock* band) { return BlendBand<false, true>(band); }

}  // namespace ombrix
