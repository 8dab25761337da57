// The row workers of the compositor, and the record that they work from.
#pragma once

#include "blend/blend_procs.h"
#include "blend/loops.h"
#include "sdk/effect_params.h"

namespace ombrix {

/// The record of one call. Of the head, the row paddings are not used, and the mask is the fill's: it lies on the fill
/// pixel by pixel, wherever the fill lies on the source.
struct BlendParams {
    StdMPEffectParams head;
    std::int64_t fillXOffset;   ///< bytes from the start of a fill row to the first pixel used
    std::int64_t fillOriginY;   ///< destination row of the fill's row 0
    std::int64_t maskXOffset;   ///< as fillXOffset, in the fill mask
    std::int64_t regionLeft;    ///< first covered column of the destination
    std::int64_t regionTop;     ///< first covered row
    std::int64_t regionRight;   ///< column after the last
    std::int64_t regionBottom;  ///< row after the last
    std::uint8_t* fillBase;
    std::int64_t fillRowBytes;
    std::int64_t fillBytesPerPixel;
    std::int64_t sourceWeight;  ///< in an opacity mix, 0 to 256
    std::int64_t fillWeight;    ///< likewise; the two may sum to 255
    BlendProc blendProc;        ///< null in mode normal; the loops do the same for many pixels
    const ModeLoops* loops;     ///< the mode's
};
static_assert(offsetof(BlendParams, fillXOffset) == 80 && offsetof(BlendParams, fillOriginY) == 88 &&
              offsetof(BlendParams, maskXOffset) == 96 && offsetof(BlendParams, regionLeft) == 104 &&
              offsetof(BlendParams, regionTop) == 112 && offsetof(BlendParams, regionRight) == 120 &&
              offsetof(BlendParams, regionBottom) == 128 && offsetof(BlendParams, fillBase) == 136 &&
              offsetof(BlendParams, fillRowBytes) == 144 && offsetof(BlendParams, fillBytesPerPixel) == 152 &&
              offsetof(BlendParams, sourceWeight) == 160 && offsetof(BlendParams, fillWeight) == 168 &&
              offsetof(BlendParams, blendProc) == 176);

/// The loops of a mode, whatever the number.
const ModeLoops& FindModeLoops(std::int32_t mode);

/// Mode normal: the opacity decides, with and without a fill mask.
std::int32_t BlendPart(MPParamBlock* band);
std::int32_t BlendMaskedPart(MPParamBlock* band);
/// All other modes, which need no opacity mix when the opacity is 1.
std::int32_t BlendSpecialPart(MPParamBlock* band);
std::int32_t BlendSpecialPartNoOpacity(MPParamBlock* band);
std::int32_t BlendSpecialMaskedPart(MPParamBlock* band);
std::int32_t BlendSpecialMaskedPartNoOpacity(MPParamBlock* band);

}  // namespace ombrix
