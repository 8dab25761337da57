// New pictures and masks, through the host's class Picture. Only `mask` may be null.
#pragma once

#include <cstdint>

#include "sdk/definition_records.h"

namespace ombrix {

/// A new picture, owned by the caller; null when the host makes none. Size in pixels and depth in bits per pixel go to
/// the host unchecked.
REALobjectStruct* CreatePicture(std::int64_t width, std::int64_t height, std::int64_t depth);

/// The picture's mask, owned by the caller, or null. With `create` the host makes a missing one.
REALobjectStruct* GetPictureMask(REALobjectStruct* picture, bool create);

/// Sets the picture's mask, or removes it (null). The host adds a reference.
void SetPictureMask(REALobjectStruct* picture, REALobjectStruct* mask);

/// Sets `target`'s mask to that of `source`, if `source` has one.
void CopyPictureMask(REALobjectStruct* source, REALobjectStruct* target);

}  // namespace ombrix
