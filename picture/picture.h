// Making pictures and passing masks between them, through the methods of the host's class `Picture`.
#pragma once

#include <cstdint>

#include "frame/definition_records.h"

namespace ombrix {

/// A new picture, whose pixels are as the host's constructor leaves them; the caller owns the reference. Width and
/// height in pixels and depth in bits per pixel go to the host as they are, whatever they are. Null when the host
/// makes none.
REALobjectStruct* CreatePicture(std::int64_t width, std::int64_t height, std::int64_t depth);

/// The mask of a picture, or null; with `create`, the host makes one if there is none. The caller owns the reference.
/// `picture` is not null.
REALobjectStruct* GetPictureMask(REALobjectStruct* picture, bool create);

/// Gives a picture a mask, or takes it off (null). The host keeps a reference of its own. `picture` is not null.
void SetPictureMask(REALobjectStruct* picture, REALobjectStruct* mask);

/// Gives `target` the mask of `source`, if `source` has one; else `target` keeps what it has. Neither is null.
void CopyPictureMask(REALobjectStruct* source, REALobjectStruct* target);

}  // namespace ombrix
