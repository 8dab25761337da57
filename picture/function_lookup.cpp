#include "picture/function_lookup.h"

#include "picture/depth_conversion.h"
#include "picture/map_effect.h"

namespace ombrix {

void* GetFunction(std::int32_t number) {
    switch (static_cast<EngineFunction>(number)) {
        case EngineFunction::ApplyMapEffect:
            return reinterpret_cast<void*>(ApplyMapEffect);
        case EngineFunction::ApplyMapEffectInPlace:
            return reinterpret_cast<void*>(ApplyMapEffectInPlace);
        case EngineFunction::EnsurePictureBits:
            return reinterpret_cast<void*>(EnsurePictureBits);
    }
    return nullptr;
}

}  // namespace ombrix
