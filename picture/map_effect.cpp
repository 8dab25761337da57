#include "picture/map_effect.h"

#include "engine/effect_walk.h"

namespace ombrix {
namespace {

/// Replaces each channel by its entry in a table.
struct ChannelTables {
    Rgb<const std::uint8_t*> table;

    Rgb<int> operator()(Rgb<int> source) const {
        return {table.red[source.red], table.green[source.green], table.blue[source.blue]};
    }
};

ChannelTables FormulaOf(const MapParams& params) { return {{params.redTable, params.greenTable, params.blueTable}}; }

std::int32_t MapPart(MPParamBlock* band) { return WalkBand<MapParams>(band, FormulaOf); }

std::int32_t MapMaskPart(MPParamBlock* band) { return WalkMaskedBand<MapParams>(band, FormulaOf); }

/// Tasks when the program leaves the number open, as for the effects of this plug-in.
constexpr std::int32_t kAutoTaskCount = 2;

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
    return base->ApplyEffect(base, &params->head, MapPart, MapMaskPart, source, mask, kAutoTaskCount);
}

void ApplyMapEffectInPlace(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                           MapParams* params) {
    if (!Accept(base, source, params)) return;
    base->ApplyEffectInPlace(base, &params->head, MapPart, MapMaskPart, source, mask, kAutoTaskCount);
}

}  // namespace ombrix
