// The driver that every tone and colour effect goes through. Effects call it through the entries in their base data;
// engine/mp_image_filter.h says what it does.
#pragma once

#include "engine/mp_image_filter.h"

namespace ombrix {

REALobjectStruct* ApplyEffect(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker,
                              RowWorker maskedWorker, REALobjectStruct* source, REALobjectStruct* mask,
                              std::int32_t autoTaskCount);

void ApplyEffectInPlace(MPImageFilterData* base, StdMPEffectParams* params, RowWorker worker, RowWorker maskedWorker,
                        REALobjectStruct* source, REALobjectStruct* mask, std::int32_t autoTaskCount);

}  // namespace ombrix
