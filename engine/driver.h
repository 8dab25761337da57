// The driver of all tone and colour effects, which call it through the entries in MPImageFilterData, where it is
// documented.
#pragma once

#include "sdk/mp_image_filter.h"

namespace ombrix {

/// Not the effects' methods of these names, which call these.
REALobjectStruct* ApplyEffect(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                              RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                              std::int32_t autoTaskCount);

void ApplyEffectInPlace(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker, RowWorker maskedWorker,
                        REALobjectStruct* source, REALobjectStruct* mask, std::int32_t autoTaskCount);

}  // namespace ombrix
