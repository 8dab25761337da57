#include "engine/pictures.h"

#include "sdk/host_calls.h"
#include "sdk/host_reference.h"

namespace ombrix {
namespace {

/// Looks a method up unless it is cached: all pictures are of one class. False when the host has none.
template <class Entry>
bool LoadPictureMethod(Entry& cached, REALobjectStruct* picture, const char* declaration) {
    if (!cached) cached = reinterpret_cast<Entry>(REALLoadObjectMethod(picture, declaration));
    return cached != nullptr;
}

}  // namespace

REALobjectStruct* CreatePicture(std::int64_t width, std::int64_t height, std::int64_t depth) {
    if (!PictureRef) PictureRef = REALGetClassRef("Picture");
    HostReference picture(REALnewInstanceWithClass(PictureRef));
    if (!picture || !LoadPictureMethod(EPictureConstructor, picture.Get(),
                                       "Constructor(width as Integer, height as Integer, Depth as Integer)")) {
        return nullptr;
    }
    EPictureConstructor(picture.Get(), width, height, depth);
    return picture.Release();
}

REALobjectStruct* GetPictureMask(REALobjectStruct* picture, bool create) {
    if (!LoadPictureMethod(EPictureGetMask, picture, "Mask(Create as Boolean) as Picture")) return nullptr;
    return EPictureGetMask(picture, create);
}

void SetPictureMask(REALobjectStruct* picture, REALobjectStruct* mask) {
    if (!LoadPictureMethod(EPictureSetMask, picture, "Mask(assigns newMask as Picture)")) return;
    EPictureSetMask(picture, mask);
}

void CopyPictureMask(REALobjectStruct* source, REALobjectStruct* target) {
    const HostReference mask(GetPictureMask(source, false));
    if (mask) SetPictureMask(target, mask.Get());
}

}  // namespace ombrix
