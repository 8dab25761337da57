#include "effects/map_effect.h"

#include "effects/workers.h"

namespace ombrix {
namespace {

ChannelTables FormulaOf(const MapParams& params) {
    return ChannelTables({params.redTable, params.greenTable, params.blueTable});
}

constexpr RowWorker MapPart = kWorker<FormulaOf>;
constexpr RowWorker MapMaskPart = kMaskedWorker<FormulaOf>;

/// False, with the error code set, when there is nothing to work on.
bool Accept(MPImageFilterData* base, const REALobjectStruct* source, const MapParams* params) {
    if (!base) return false;
    if (source && params && params->redTable && params->greenTable && params->blueTable) return true;
    base->ErrorCode = ILLEGAL_INPUT_PARAMETER;
    return false;
}

}  // namespace

REALobjectStruct* ApplyMapEffect(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                                 MapParams* params) {
    if (!Accept(base, source, params)) return nullptr;
    return base->ApplyEffect(base, &params->head, MapPart, MapMaskPart, source, mask, kToneTaskCount);
}

void ApplyMapEffectInPlace(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                           MapParams* params) {
    if (!Accept(base, source, params)) return;
    base->ApplyEffectInPlace(base, &params->head, MapPart, MapMaskPart, source, mask, kToneTaskCount);
}

}  // namespace ombrix
