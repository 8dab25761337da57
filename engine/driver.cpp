#include "engine/driver.h"

#include "engine/destination.h"
#include "engine/executor.h"
#include "engine/parameter_head.h"
#include "engine/pixel_buffer.h"

namespace ombrix {
namespace {

/// Runs the worker that fits over all rows, unless the mask cannot be used.
ErrorCode RunWorker(StdMPEffectParams& params, RowWorker worker, RowWorker maskedWorker, REALobjectStruct* mask,
                    std::int32_t autoTaskCount) {
    if (!mask) {
        Execute(&params.generic, worker, autoTaskCount);
        return NO_ERROR;
    }
    const LockedPixels pixels(mask);
    if (!pixels.Usable() || pixels.Width() < params.generic.width || pixels.Height() < params.generic.height) {
        return INVALID_MASK;
    }
    FillMaskHead(params, pixels);
    Execute(&params.generic, maskedWorker, autoTaskCount);
    return NO_ERROR;
}

}  // namespace

REALobjectStruct* ApplyEffect(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                              RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                              std::int32_t autoTaskCount) {
    base->ErrorCode = NO_ERROR;
    LockedPixels pixels(source);
    if (!pixels.Usable()) {
        base->ErrorCode = INVALID_SOURCE_IMAGE;
        return nullptr;
    }
    Destination destination(pixels);
    if (!destination) {
        base->ErrorCode = UNABLE_TO_CREATE_DESTINATION;
        return nullptr;
    }
    FillHead(*params, *base, pixels, destination.Pixels());
    base->ErrorCode = RunWorker(*params, worker, maskedWorker, mask, autoTaskCount);
    pixels.Unlock();
    return destination.Finish();
}

void ApplyEffectInPlace(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker, RowWorker maskedWorker,
                        REALobjectStruct* source, REALobjectStruct* mask, std::int32_t autoTaskCount) {
    base->ErrorCode = NO_ERROR;
    const LockedPixels pixels(source);
    if (!pixels.Usable()) {
        base->ErrorCode = INVALID_SOURCE_IMAGE;
        return;
    }
    FillHead(*params, *base, pixels, pixels);
    base->ErrorCode = RunWorker(*params, worker, maskedWorker, mask, autoTaskCount);
}

}  // namespace ombrix
