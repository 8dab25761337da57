// Effects and properties by their names or words.
#pragma once

#include "capi/handles.h"
#include "capi/session.h"
#include "ombrix/catalogue.h"

namespace ombrix::capi {

/// A NotFound when there is none of this name. Valid within the session.
const catalogue::Effect& EffectNamed(const Session& session, const char* name);
const catalogue::Effect& EffectOf(const Session& session, const ombrix_effect* effect);
const catalogue::Property& PropertyNamed(const catalogue::Effect& effect, const char* name);

}  // namespace ombrix::capi
