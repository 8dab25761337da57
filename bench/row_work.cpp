#include "bench/row_work.h"

#include <utility>

#include "engine/destination.h"
#include "engine/parameter_head.h"
#include "engine/pixel_buffer.h"

namespace ombrix::bench {
namespace {

RowWorkReceiver current;

/// Calls it once. It may capture row work of its own meanwhile.
void GiveToReceiver(GenericMPParams* params, RowWorker worker, std::int32_t /*autoTaskCount*/) {
    std::exchange(current, nullptr)(params, worker);
}

// Tone and colour effects go through the driver, which calls its executor directly: these two stand in for it.

void Capture(const MPImageFilterData& base, StdMPEffectParams* params, RowWorker worker, RowWorker maskedWorker,
             const LockedPixels& source, const LockedPixels& destination, REALobjectStruct* mask) {
    FillHead(*params, base, source, destination);
    if (!mask) {
        GiveToReceiver(&params->generic, worker, 0);
        return;
    }
    const LockedPixels pixels(mask);
    FillMaskHead(*params, pixels);
    GiveToReceiver(&params->generic, maskedWorker, 0);
}

REALobjectStruct* CaptureApply(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                               RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                               std::int32_t /*autoTaskCount*/) {
    const LockedPixels pixels(source);
    Destination destination(pixels);
    Capture(*base, params, worker, maskedWorker, pixels, destination.Pixels(), mask);
    return destination.Finish();
}

void CaptureApplyInPlace(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker, RowWorker maskedWorker,
                         REALobjectStruct* source, REALobjectStruct* mask, std::int32_t /*autoTaskCount*/) {
    const LockedPixels pixels(source);
    Capture(*base, params, worker, maskedWorker, pixels, pixels, mask);
}

}  // namespace

RowWorkCapture::RowWorkCapture(MPImageFilterData& base, RowWorkReceiver receiver) : base_(base), entries_(base) {
    current = std::move(receiver);
    base.Execute = GiveToReceiver;
    base.ApplyEffect = CaptureApply;
    base.ApplyEffectInPlace = CaptureApplyInPlace;
}

RowWorkCapture::~RowWorkCapture() {
    base_.Execute = entries_.Execute;
    base_.ApplyEffect = entries_.ApplyEffect;
    base_.ApplyEffectInPlace = entries_.ApplyEffectInPlace;
    current = nullptr;
}

}  // namespace ombrix::bench
