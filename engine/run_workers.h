// What the driver and the compositor share: running a call's workers, and failing.
#pragma once

#include <cstddef>

#include "engine/locked_pixels.h"
#include "engine/parameter_head.h"
#include "sdk/mp_image_filter.h"

namespace ombrix {

/// The workers of one call.
struct EffectWorkers {
    RowWorker unmasked;
    RowWorker masked;
};

/// Sets the error code. Returns null, as the failed call does.
inline std::nullptr_t Fail(MPImageFilterData* base, ErrorCode code) {
    base->ErrorCode = code;
    return nullptr;
}

/// Runs the unmasked worker over all rows or, with a mask, the masked one. FillHead has filled `params`. Runs none and
/// returns INVALID_MASK when the mask is unusable or `accepts(its pixels)` is false. `accepts` may also fill the
/// effect's own fields.
template <class Accepts>
ErrorCode RunWorkers(const MPImageFilterData& base, StdMPEffectParams& params, EffectWorkers workers,
                     REALobjectStruct* mask, std::int32_t autoTaskCount, Accepts accepts) {
    if (!mask) {
        base.Execute(&params.generic, workers.unmasked, autoTaskCount);
        return NO_ERROR;
    }
    const LockedPixels pixels(mask);
    if (!pixels.Usable() || !accepts(pixels)) return INVALID_MASK;
    FillMaskHead(params, pixels);
    base.Execute(&params.generic, workers.masked, autoTaskCount);
    return NO_ERROR;
}

}  // namespace ombrix
