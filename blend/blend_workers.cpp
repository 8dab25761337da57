#include "blend/blend_workers.h"

#include <cstring>

#include "pixels/bands.h"

namespace ombrix {
namespace {

/// A worker: copies what is not covered and blends what is.
std::int32_t BlendBand(const MPParamBlock* band, RowLoop ModeLoops::*loopOfMode) {
    auto& params = *static_cast<BlendParams*>(band->params);
    StdMPEffectParams& head = params.head;
    const std::int64_t bytes = head.bytesPerPixel;
    const std::int64_t width = head.generic.width;
    const bool coversColumns = params.regionLeft < params.regionRight;
    const RowLoop loop = params.loops->*loopOfMode;
    const Normal formula;  // formulas of modes have no data: any will do
    RowSettings settings = SettingsOf(head, &formula);
    settings.sourceWeight = static_cast<int>(params.sourceWeight);
    settings.fillWeight = static_cast<int>(params.fillWeight);
    ForEachRow(band, head.generic, false, [&](std::int64_t y, std::int64_t) {
        const std::uint8_t* source = head.srcBase + y * head.srcRowBytes;
        std::uint8_t* destination = head.dstBase + y * head.dstRowBytes;
        const auto copy = [&](std::int64_t from, std::int64_t to) {
            if (from < to) std::memcpy(destination + from * bytes, source + from * bytes, (to - from) * bytes);
        };
        if (y < params.regionTop || y >= params.regionBottom || !coversColumns) {
            copy(0, width);
            return;
        }
        copy(0, params.regionLeft);
        const std::int64_t fillY = y - params.fillOriginY;
        Row row{.source = {source + params.regionLeft * bytes, head.bytesPerPixel},
                .fill = {params.fillBase + fillY * params.fillRowBytes + params.fillXOffset,
                         static_cast<std::int32_t>(params.fillBytesPerPixel)},
                .destination = destination + params.regionLeft * bytes,
                .count = params.regionRight - params.regionLeft};
        if (loopOfMode == &ModeLoops::withMask) {
            row.mask = {head.maskBase + fillY * head.maskRowBytes + params.maskXOffset, head.maskBytesPerPixel};
        }
        loop(row, settings);
        copy(params.regionRight, width);
    });
    FinishBand(settings);
    return 0;
}

}  // namespace

const ModeLoops& FindModeLoops(std::int32_t mode) {
    return LoopsOfMode(mode == kNormalMode ? 0 : BlendHandlerIndex(mode) + 1);
}

std::int32_t BlendPart(MPParamBlock* band) { return BlendBand(band, &ModeLoops::withOpacity); }
std::int32_t BlendMaskedPart(MPParamBlock* band) { return BlendBand(band, &ModeLoops::withMask); }
std::int32_t BlendSpecialPart(MPParamBlock* band) { return BlendBand(band, &ModeLoops::withOpacity); }
std::int32_t BlendSpecialPartNoOpacity(MPParamBlock* band) { return BlendBand(band, &ModeLoops::plain); }
std::int32_t BlendSpecialMaskedPart(MPParamBlock* band) { return BlendBand(band, &ModeLoops::withMask); }
/// The opacity mix is done by the weights 0 and 256 then, which change nothing.
std::int32_t BlendSpecialMaskedPartNoOpacity(MPParamBlock* band) { return BlendBand(band, &ModeLoops::withMask); }

}  // namespace ombrix
