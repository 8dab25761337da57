// The row workers of the effects: each runs the loop of a formula over the rows of its band.
#pragma once

#include "effects/loops.h"
#include "pixels/bands.h"

namespace ombrix {

/// The record that a function makes a formula from.
template <class Function>
struct RecordOf;
template <class Formula, class Params>
struct RecordOf<Formula (*)(const Params&)> {
    using type = Params;
};

/// `formulaOf` makes the formula from the effect's record, once per band.
template <auto formulaOf, bool isMasked>
std::int32_t RunFormula(MPParamBlock* band) {
    auto& params = *static_cast<typename RecordOf<decltype(formulaOf)>::type*>(band->params);
    const auto formula = formulaOf(params);
    const EffectLoops& loops = LoopsOf(EffectFormulaOf<std::remove_cv_t<decltype(formula)>>::value);
    StdMPEffectParams& head = params.head;
    const RowSettings settings = SettingsOf(head, &formula);
    const std::int64_t width = head.generic.width;
    const bool areJoined = width > 0 && head.srcRowBytes == width * head.bytesPerPixel &&
                           head.dstRowBytes == head.srcRowBytes &&
                           (!isMasked || head.maskRowBytes == width * head.maskBytesPerPixel);
    ForEachRow(band, head.generic, areJoined, [&](std::int64_t y, std::int64_t rows) {
        Row row{.source = {head.srcBase + y * head.srcRowBytes, head.bytesPerPixel},
                .destination = head.dstBase + y * head.dstRowBytes,
                .count = width * rows};
        if (isMasked) row.mask = {head.maskBase + y * head.maskRowBytes, head.maskBytesPerPixel};
        (isMasked ? loops.masked : loops.plain)(row, settings);
    });
    FinishBand(settings);
    return 0;
}

/// The worker of a call without a mask, and that of a call with one.
template <auto formulaOf>
constexpr RowWorker kWorker = RunFormula<formulaOf, false>;
template <auto formulaOf>
constexpr RowWorker kMaskedWorker = RunFormula<formulaOf, true>;

}  // namespace ombrix
