// Module OmbrixUtilities: brings pictures into a form that effects can work on.
#pragma once

#include <cstdint>

#include "sdk/definition_records.h"

namespace ombrix {

/// EngineFunction::EnsurePictureBits; see sdk/engine_functions.h.
REALobjectStruct* EnsurePictureBits(REALobjectStruct* src, std::int64_t depth);

/// The same, but keeps bitmaps of 24 and 32 bits and turns all else into 32 bits. Programs call it
/// EnsurePictureCompatible.
REALobjectStruct* EnsureCompatible(REALobjectStruct* src);

}  // namespace ombrix
