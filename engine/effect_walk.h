// The row workers of every tone and colour effect. An effect brings a formula, a callable from Rgb<int> to Rgb<int>
// with channels from 0 to 255, and knows nothing of rows, depths, masks or tasks.
//
// A formula may say more of itself, and is then worked out faster without a mask:
//   ByBytes    a type within it, made of a formula and a WordFormat: a callable of (Place, Lane) that gives for each
//              byte of a block what the formula gives for its channel;
//   weights,   LumaWeights, and what the formula gives for a colour whose luma by these weights is known.
//   FromLuma
#pragma once

#include <type_traits>

#include "engine/effect_params.h"
#include "engine/instruction_level.h"
#include "engine/row_walk.h"
#include "engine/stream_copy.h"
#include "engine/word_kernel.h"

namespace ombrix {

template <class Formula>
concept WorksByBytes = requires {
    typename Formula::ByBytes;
};

template <class Formula>
concept WorksByLuma = requires(const Formula& formula) {
    formula.FromLuma(0);
};

/// Mixes an effect with its source. A mask pixel that is black lets the whole effect through. Any other weighs each
/// channel by the mask's same channel; the sum is divided by 256 and not by 255, so that a white mask pixel gives one
/// less than the source.
inline Rgb<int> MixByMask(Rgb<int> source, Rgb<int> effect, Rgb<int> mask) {
    const bool isBlack = (mask.red | mask.green | mask.blue) == 0;
    const auto mix = [isBlack](int s, int e, int m) { return isBlack ? e : (s * m + (255 - m) * e) >> 8; };
    return {mix(source.red, effect.red, mask.red), mix(source.green, effect.green, mask.green),
            mix(source.blue, effect.blue, mask.blue)};
}

/// The kernel of a formula.
template <class Formula, bool withMask>
void RunFormula(const void* formulaAddress, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([formulaAddress, &pixelsOfCall] {
        // In registers: what is stored below could be part of the originals.
        const Formula formula = *static_cast<const Formula*>(formulaAddress);
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format{PixelFormat(4)};
        const auto finish = [&](std::int64_t x, Rgb<int> source, Rgb<int> effect) {
            if constexpr (!withMask) return effect;
            return MixByMask(source, effect, ColourOf(LoadWord(pixels.mask + 4 * x), format));
        };
        if constexpr (WorksByLuma<Formula>) {
            ForEachLuma(pixels, format, formula.weights, [&](std::int64_t x, Rgb<int> source, int luma) {
                return finish(x, source, formula.FromLuma(luma));
            });
        } else if constexpr (WorksByBytes<Formula> && !withMask) {
            const typename Formula::ByBytes byBytes(formula, format);
            ForEachByte(pixels, format, [&byBytes](const WordPixels&) {
                return [&byBytes](Place place, Lane byte) { return byBytes(place, byte); };
            });
        } else {
            ForEachColour(pixels, format,
                          [&](std::int64_t x, Rgb<int> source) { return finish(x, source, formula(source)); });
        }
    });
}

/// Runs a kernel over the pixels of a band, with the mask if there is one for `withMask`.
inline std::int32_t RunOverBand(const MPParamBlock* band, StdMPEffectParams& head, bool withMask, WordKernel kernel,
                                const void* formula) {
    const bool isStreamed = ShouldStream(head);
    ForEachRow(band, head.generic, [&](std::int64_t row) {
        RowJob job{.source = {head.srcBase + row * head.srcRowBytes, head.bytesPerPixel},
                   .destination = head.dstBase + row * head.dstRowBytes,
                   .count = head.generic.width,
                   .isStreamed = isStreamed};
        if (withMask) job.mask = {head.maskBase + row * head.maskRowBytes, head.maskBytesPerPixel};
        WalkRow(job, kernel, formula);
    });
    if (isStreamed) StreamFence();
    return 0;
}

/// A worker of an effect without a mask: runs a formula over the pixels of its band. `formulaOf` makes the formula from
/// the effect's record, once per band.
template <class Params, class FormulaOf>
std::int32_t WalkBand(const MPParamBlock* band, FormulaOf formulaOf) {
    auto& params = *static_cast<Params*>(band->params);
    const auto formula = formulaOf(params);
    return RunOverBand(band, params.head, false, RunFormula<std::remove_cv_t<decltype(formula)>, false>, &formula);
}

/// A worker of an effect with a mask.
template <class Params, class FormulaOf>
std::int32_t WalkMaskedBand(const MPParamBlock* band, FormulaOf formulaOf) {
    auto& params = *static_cast<Params*>(band->params);
    const auto formula = formulaOf(params);
    return RunOverBand(band, params.head, true, RunFormula<std::remove_cv_t<decltype(formula)>, true>, &formula);
}

}  // namespace ombrix
