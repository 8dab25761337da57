// A plug-in whose methods each break a rule.
#include <stdlib.h>

#include <thread>

#include "sdk/definition_rows.h"
#include "tests/host/plugins/services.h"

namespace {

using namespace ombrix;
using Handle = REALobjectStruct*;

REALresolver givenResolver = nullptr;
Handle dead = nullptr;

Services Host() { return Services(givenResolver); }

Handle NewPicture() { return Host().createInstance(Host().findClass("Picture")); }

void ReleaseArgument(Handle, Handle picture) { Host().unlockObject(picture); }

void ReleaseTwice(Handle) {
    const Handle picture = NewPicture();
    Host().unlockObject(picture);
    Host().unlockObject(picture);
    dead = picture;
}

void UseDead(Handle) {
    REALpictureDescription description;
    Host().lockDescription(dead, &description, kBitmapContextPicture);
}

void LeaveLocked(Handle, Handle picture) {
    REALpictureDescription description;
    Host().lockDescription(picture, &description, kBitmapContextPicture);
}

void Unlock(Handle, Handle picture) { Host().unlockDescription(picture); }

void LockFromThread(Handle, Handle picture) {
    const Services host = Host();
    bool locked = true;
    std::thread([&] {
        REALpictureDescription description;
        locked = host.lockDescription(picture, &description, kBitmapContextPicture);
    }).join();
    if (locked) abort();
}

Handle ReturnArgument(Handle, Handle picture) { return picture; }
Handle ReturnItself(Handle self) {
    Host().lockObject(self);
    return self;
}
Handle ReturnRubbish(Handle) { return reinterpret_cast<Handle>(0x1238); }
void Keep(Handle, Handle picture) { Host().lockObject(picture); }
void MakeAndForget(Handle) { NewPicture(); }

void UnlockPoint(Handle, Handle point) { Host().unlockDescription(point); }
void PassNil(Handle) {
    REALpictureDescription description;
    Host().lockNative(nullptr, &description);
}
void CreateRubbish(Handle) { Host().createInstance(reinterpret_cast<REALclassRef>(0x1238)); }
void AskInRubbish(Handle self) { Host().loadMethod(self, "Apply(source is Picture)"); }
void RegisterLate(Handle) {
    static REALmoduleDefinition late = ModuleRecord("Late", {}, {});
    Host().registerModule(&late);
}
void DestroyLocked(Handle) {
    const Handle picture = NewPicture();
    reinterpret_cast<void (*)(Handle, std::int64_t, std::int64_t, std::int64_t)>(Host().loadMethod(
        picture, "Constructor(width as Integer,height as Integer,depth as Integer)"))(picture, 1, 1, 32);
    LeaveLocked(nullptr, picture);
    Host().unlockObject(picture);
}
void BehaveWell(Handle, Handle picture) {
    LeaveLocked(nullptr, picture);
    Unlock(nullptr, picture);
    Keep(nullptr, picture);
    ReleaseArgument(nullptr, picture);
}

const REALmethodDefinition methods[] = {
    Method(ReleaseArgument, "ReleaseArgument(picture as Picture)"),
    Method(ReleaseTwice, "ReleaseTwice()"),
    Method(UseDead, "UseDead()"),
    Method(LeaveLocked, "LeaveLocked(picture as Picture)"),
    Method(Unlock, "Unlock(picture as Picture)"),
    Method(LockFromThread, "LockFromThread(picture as Picture)"),
    Method(ReturnArgument, "ReturnArgument(picture as Picture) as Picture"),
    Method(ReturnItself, "ReturnItself() as Picture"),
    Method(ReturnRubbish, "ReturnRubbish() as Picture"),
    Method(Keep, "Keep(picture as Picture)"),
    Method(MakeAndForget, "MakeAndForget()"),
    Method(UnlockPoint, "UnlockPoint(point as Point)"),
    Method(PassNil, "PassNil()"),
    Method(CreateRubbish, "CreateRubbish()"),
    Method(AskInRubbish, "AskInRubbish()"),
    Method(RegisterLate, "RegisterLate()"),
    Method(DestroyLocked, "DestroyLocked()"),
    Method(BehaveWell, "BehaveWell(picture as Picture)"),
};
REALclassDefinition culpritClass = ClassRecord({.name = "Culprit", .methods = methods});

}  // namespace

OMBRIX_TEST_EXPORT void REALPluginMain(REALresolver resolver) {
    givenResolver = resolver;
    Host().registerClass(&culpritClass);
}
