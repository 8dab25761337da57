#include "capi/names.h"

namespace ombrix::capi {

const catalogue::Effect& EffectNamed(const Session& session, const char* name) {
    return session.Catalogue().Named(Required(name, "the name"));
}

const catalogue::Effect& EffectOf(const Session& session, const ombrix_effect* effect) {
    return EffectNamed(session, Required(effect, "the effect")->onRows.ClassName().c_str());
}

const catalogue::Property& PropertyNamed(const catalogue::Effect& effect, const char* name) {
    return effect.PropertyNamed(Required(name, "the property"));
}

}  // namespace ombrix::capi
