// Module OmbrixUtilities: brings a picture into a form that the effects can work on.
#pragma once

#include <cstdint>

#include "frame/definition_records.h"

namespace ombrix {

/// `src` itself, with one more reference for the caller, when it is a bitmap of exactly `depth` bits per pixel; else a
/// new picture of that depth with `src` drawn into it and its mask attached. The reference is the caller's. Null when
/// `src` is null or the host cannot make or draw the picture.
REALobjectStruct* EnsurePictureBits(REALobjectStruct* src, std::int64_t depth);

/// The same for what effects accept: a bitmap of 24 or 32 bits is kept, all else becomes one of 32. Programs call it
/// `EnsurePictureCompatible`.
REALobjectStruct* EnsureCompatible(REALobjectStruct* src);

}  // namespace ombrix
