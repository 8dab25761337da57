// The map effect: replaces each channel of each pixel by an entry of a table. No class of this plug-in uses it; it is
// for code that builds on MPImageFilter and finds it through GetFunction (picture/function_lookup.h).
#pragma once

#include "engine/mp_image_filter.h"

namespace ombrix {

/// The record of a map effect: the caller sets the three tables, the driver fills the head. Each table has 256 bytes,
/// entry i being what i becomes; they stay the caller's and must not change until the call returns.
struct MapParams {
    StdMPEffectParams head;
    const std::uint8_t* redTable;
    const std::uint8_t* greenTable;
    const std::uint8_t* blueTable;
};
static_assert(sizeof(MapParams) == 104);
static_assert(offsetof(MapParams, redTable) == 80 && offsetof(MapParams, greenTable) == 88 &&
              offsetof(MapParams, blueTable) == 96);

/// Applies the tables to a copy of `source`, mixed with it by `mask` if there is one: the new picture, whose reference
/// is the caller's, or null. It carries no mask. `base` is the calling object's base data, which receives the error
/// code: ILLEGAL_INPUT_PARAMETER when source, params or a table is missing, else the driver's.
REALobjectStruct* ApplyMapEffect(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                                 MapParams* params);

/// The same on `source` itself.
void ApplyMapEffectInPlace(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                           MapParams* params);

}  // namespace ombrix
