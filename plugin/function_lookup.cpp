#include "plugin/function_lookup.h"

#include "effects/map_effect.h"
#include "plugin/utilities.h"
#include "sdk/engine_functions.h"

namespace ombrix {
namespace {

/// A function's address. Compiles only if the function has the type that callers give it.
template <class Proc>
void* AddressOf(Proc function) {
    return reinterpret_cast<void*>(function);
}

}  // namespace

void* GetFunction(std::int32_t number) {
    switch (static_cast<EngineFunction>(number)) {
        case EngineFunction::ApplyMapEffect:
            return AddressOf<ApplyMapEffectProc>(ApplyMapEffect);
        case EngineFunction::ApplyMapEffectInPlace:
            return AddressOf<ApplyMapEffectInPlaceProc>(ApplyMapEffectInPlace);
        case EngineFunction::EnsurePictureBits:
            return AddressOf<EnsurePictureBitsProc>(EnsurePictureBits);
    }
    return nullptr;
}

}  // namespace ombrix
