// Finds the functions that other plug-ins call by number.
#pragma once

#include <cstdint>

namespace ombrix {

/// The address of an EngineFunction (sdk/engine_functions.h); null for any other number.
void* GetFunction(std::int32_t number);

}  // namespace ombrix
