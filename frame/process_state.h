// What the whole process shares: set when the host starts the plug-in, read by everything else, never freed.
#pragma once

#include <cstdint>

#include "frame/definition_records.h"

namespace ombrix {

/// The host's resolver, as the entry received it.
extern REALresolver gResolver;

/// Adds or drops a reference to a host object; null is accepted and does nothing.
extern void (*ELockObject)(REALobjectStruct* object);
extern void (*EUnlockObject)(REALobjectStruct* object);

/// Byte positions of the four components within a pixel of four bytes; all 0 until the plug-in has been started.
extern std::uint8_t NULL_PIX;
extern std::uint8_t RED_PIX;
extern std::uint8_t GREEN_PIX;
extern std::uint8_t BLUE_PIX;

/// The host's class `Picture` and three of its methods: null until picture/picture.h first needs them.
extern REALclassRef PictureRef;
extern void (*EPictureConstructor)(REALobjectStruct* picture, std::int64_t width, std::int64_t height,
                                   std::int64_t depth);
extern void (*EPictureSetMask)(REALobjectStruct* picture, REALobjectStruct* mask);
extern REALobjectStruct* (*EPictureGetMask)(REALobjectStruct* picture, bool create);

}  // namespace ombrix
