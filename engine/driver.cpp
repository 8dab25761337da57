#include "engine/driver.h"

#include "engine/destination.h"
#include "engine/locked_pixels.h"
#include "engine/parameter_head.h"
#include "engine/run_workers.h"

namespace ombrix {
namespace {

/// Accepts masks that have a pixel for each of the source's.
auto Covers(const LockedPixels& source) {
    return [&source](const LockedPixels& mask) {
        return mask.Width() >= source.Width() && mask.Height() >= source.Height();
    };
}

}  // namespace

REALobjectStruct* ApplyEffect(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                              RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                              std::int32_t autoTaskCount) {
    base->ErrorCode = NO_ERROR;
    LockedPixels pixels(source);
    if (!pixels.Usable()) return Fail(base, INVALID_SOURCE_IMAGE);
    Destination destination(pixels);
    if (!destination) return Fail(base, UNABLE_TO_CREATE_DESTINATION);
    FillHead(*params, *base, pixels, destination.Pixels());
    base->ErrorCode = RunWorkers(*base, *params, {worker, maskedWorker}, mask, autoTaskCount, Covers(pixels));
    pixels.Unlock();
    return destination.Finish();
}

void ApplyEffectInPlace(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker, RowWorker maskedWorker,
                        REALobjectStruct* source, REALobjectStruct* mask, std::int32_t autoTaskCount) {
    base->ErrorCode = NO_ERROR;
    const LockedPixels pixels(source);
    if (!pixels.Usable()) {
        Fail(base, INVALID_SOURCE_IMAGE);
        return;
    }
    FillHead(*params, *base, pixels, pixels);
    base->ErrorCode = RunWorkers(*base, *params, {worker, maskedWorker}, mask, autoTaskCount, Covers(pixels));
}

}  // namespace ombrix
