// The map effect, which replaces channel values by tables. No class of this plug-in uses it: other plug-ins call it by
// number (sdk/engine_functions.h documents it).
#pragma once

#include "sdk/engine_functions.h"

namespace ombrix {

REALobjectStruct* ApplyMapEffect(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                                 MapParams* params);

void ApplyMapEffectInPlace(MPImageFilterData* base, REALobjectStruct* source, REALobjectStruct* mask,
                           MapParams* params);

}  // namespace ombrix
