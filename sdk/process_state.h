// State of the whole process: set when the host starts the plug-in, never freed.
#pragma once

#include <cstdint>

#include "sdk/definition_records.h"

namespace ombrix {

/// The host's resolver.
extern REALresolver gResolver;

/// Adds or drops a reference to a host object; null does nothing.
extern void (*ELockObject)(REALobjectStruct* object);
extern void (*EUnlockObject)(REALobjectStruct* object);

/// Byte positions of the components in a pixel of four bytes; all 0 before the plug-in is started.
extern std::uint8_t NULL_PIX;
extern std::uint8_t RED_PIX;
extern std::uint8_t GREEN_PIX;
extern std::uint8_t BLUE_PIX;

/// The host's class Picture and three of its methods; null until engine/pictures.h first needs them.
extern REALclassRef PictureRef;
extern void (*EPictureConstructor)(REALobjectStruct* picture, std::int64_t width, std::int64_t height,
                                   std::int64_t depth);
extern void (*EPictureSetMask)(REALobjectStruct* picture, REALobjectStruct* mask);
extern REALobjectStruct* (*EPictureGetMask)(REALobjectStruct* picture, bool create);

}  // namespace ombrix
