// Functions of the engine by number, for code that builds on MPImageFilter in a plug-in of its own: such code is linked
// with nothing of this plug-in and reaches it through the GetFunction entry of its base data.
#pragma once

#include <cstdint>

namespace ombrix {

/// What GetFunction knows; the caller gives the address that it receives the type of the function named.
enum class EngineFunction : std::int32_t {
    ApplyMapEffect = 1,         ///< picture/map_effect.h
    ApplyMapEffectInPlace = 2,  ///< picture/map_effect.h
    EnsurePictureBits = 3,      ///< picture/depth_conversion.h
};

/// The address of a function, null for a number that stands for none.
void* GetFunction(std::int32_t number);

}  // namespace ombrix
