// The row workers of every tone and colour effect. An effect brings a formula, a callable from Rgb<int> to Rgb<int>
// with channels from 0 to 255, and knows nothing of rows, depths, masks or tasks.
//
// A formula may be of another kind, and is worked out faster then:
//   by bytes   instead of the call, a type ByBytes within it, made of the formula and a WordFormat: a callable that
//              gives what a byte of a block becomes, for formulas that look at no other channel (see BlockCombiner);
//   by luma    instead of the call, `LumaWeights weights` for greys, and if these are not all, `shift`, a formula by
//              bytes that they are given to.
#pragma once

#include <cstddef>
#include <type_traits>

#include "engine/effect_params.h"
#include "engine/instruction_level.h"
#include "engine/mask_mix.h"
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
    formula.weights;
};

/// The greys of a luma, with what is made of them.
template <class Shift>
struct GreyForm {
    LumaWeights weights;
    Shift shift;
};

/// Leaves greys as they are.
struct NoShift {
    std::uint8_t operator()(std::size_t, std::uint8_t grey) const { return grey; }
};

/// What the kernel of a formula is made of: the formula, or a form of it that takes long to make.
template <class Formula>
auto KernelForm(const Formula& formula) {
    if constexpr (WorksByBytes<Formula>) {
        return typename Formula::ByBytes(formula, WordFormat());
    } else if constexpr (requires { formula.shift; }) {
        const auto shift = KernelForm(formula.shift);
        return GreyForm<std::remove_cv_t<decltype(shift)>>{formula.weights, shift};
    } else if constexpr (WorksByLuma<Formula>) {
        return GreyForm<NoShift>{formula.weights, {}};
    } else {
        return formula;
    }
}

/// The kernel of such a form.
template <class Form>
void RunForm(const void* formAddress, const WordPixels& pixelsOfCall) {
    RunAtBestLevel([formAddress, &pixelsOfCall] {
        // In registers: what is stored below could be part of the originals.
        const Form form = *static_cast<const Form*>(formAddress);
        const WordPixels pixels = pixelsOfCall;
        const WordFormat format;
        constexpr Roles roles{};
        if constexpr (WorksByLuma<Form>) {
            ForEachLuma<roles>(pixels, format, form.weights, form.shift);
        } else if constexpr (std::is_invocable_v<const Form&, Rgb<int>>) {
            ForEachColour<roles>(pixels, format,
                                 [&form](const WordPixels&, std::int64_t, Rgb<int> source) { return form(source); });
        } else {
            ForEachByte<roles>(pixels, format,
                               [&form](const WordPixels&, std::int64_t) -> const Form& { return form; });
        }
    });
}

/// Runs a kernel over the pixels of a band. With a mask, its results are mixed with the source.
inline std::int32_t RunOverBand(const MPParamBlock* band, StdMPEffectParams& head, const WordKernel& kernel,
                                bool withMask) {
    const bool isStreamed = ShouldStream(head);
    ForEachRow(band, head.generic, [&](std::int64_t row) {
        RowJob job{.source = {head.srcBase + row * head.srcRowBytes, head.bytesPerPixel},
                   .destination = head.dstBase + row * head.dstRowBytes,
                   .count = head.generic.width,
                   .isStreamed = isStreamed};
        if (withMask) job.mask = {head.maskBase + row * head.maskRowBytes, head.maskBytesPerPixel};
        WalkRow(job, kernel, withMask ? kMaskMix : WordKernel{});
    });
    if (isStreamed) StreamFence();
    return 0;
}

/// A worker of an effect: runs a formula over the pixels of its band. `formulaOf` makes the formula from the effect's
/// record, once per band.
template <class Params, class FormulaOf>
std::int32_t WalkBand(const MPParamBlock* band, FormulaOf formulaOf, bool withMask = false) {
    auto& params = *static_cast<Params*>(band->params);
    const auto form = KernelForm(formulaOf(params));
    return RunOverBand(band, params.head, {RunForm<std::remove_cv_t<decltype(form)>>, &form}, withMask);
}

/// A worker of an effect with a mask.
template <class Params, class FormulaOf>
std::int32_t WalkMaskedBand(const MPParamBlock* band, FormulaOf formulaOf) {
    return WalkBand<Params>(band, formulaOf, true);
}

}  // namespace ombrix
