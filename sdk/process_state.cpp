#include "sdk/process_state.h"

namespace ombrix {

REALresolver gResolver = nullptr;

void (*ELockObject)(REALobjectStruct*) = nullptr;
void (*EUnlockObject)(REALobjectStruct*) = nullptr;

std::uint8_t NULL_PIX = 0;
std::uint8_t RED_PIX = 0;
std::uint8_t GREEN_PIX = 0;
std::uint8_t BLUE_PIX = 0;

REALclassRef PictureRef = nullptr;
void (*EPictureConstructor)(REALobjectStruct*, std::int64_t, std::int64_t, std::int64_t) = nullptr;
void (*EPictureSetMask)(REALobjectStruct*, REALobjectStruct*) = nullptr;
REALobjectStruct* (*EPictureGetMask)(REALobjectStruct*, bool) = nullptr;

}  // namespace ombrix
