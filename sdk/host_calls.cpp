#include "sdk/host_calls.h"

namespace ombrix {
namespace {

/// A Boolean of the host: any non-zero byte is true, where a C++ bool may only be 0 or 1.
using HostBoolean = std::int8_t;

template <class Signature>
class HostEntry;

/// A service of the host: its name and, once found, its entry.
template <class Result, class... Arguments>
class HostEntry<Result(Arguments...)> {
  public:
    constexpr explicit HostEntry(const char* name) : name_(name) {}

    /// Looks the entry up unless it is known. False when the host has none.
    bool Resolve() {
        if (!entry_) entry_ = reinterpret_cast<Result (*)(Arguments...)>(HCallResolver(name_));
        return entry_ != nullptr;
    }

    Result operator()(Arguments... arguments) { return Resolve() ? entry_(arguments...) : Result(); }

  private:
    const char* name_;
    Result (*entry_)(Arguments...) = nullptr;
};

constinit HostEntry<std::int32_t(REALclassDefinition*)> pRegisterClass("PluginRegisterClass");
constinit HostEntry<std::int32_t(REALmoduleDefinition*)> pRegisterModule("PluginRegisterModule");
constinit HostEntry<double()> pGetRBVersion("REALGetRBVersion");
constinit HostEntry<REALclassRef(const char*)> pGetClassRef("pluginObjectType");
constinit HostEntry<REALobjectStruct*(REALclassRef)> pnewInstanceWithClass("CreateInstance");
constinit HostEntry<void*(REALobjectStruct*, const char*)> pLoadObjectMethod("REALLoadObjectMethod");
constinit HostEntry<HostBoolean(REALobjectStruct*, const char*, REALobjectStruct**)> pGetPropValueObject(
    "REALGetPropValueObject");
constinit HostEntry<HostBoolean(REALobjectStruct*, const char*, std::int64_t*)> pGetPropValueInteger(
    "REALGetPropValueInteger");
constinit HostEntry<HostBoolean(REALobjectStruct*, REALpictureDescription*, std::uint32_t)> pLockPictureDescription(
    "REALLockPictureDescription");
constinit HostEntry<HostBoolean(REALobjectStruct*, REALpictureDescription*)> pLockPictureDescriptionWithNativeType(
    "lockPictureDescription");
constinit HostEntry<void(REALobjectStruct*)> pUnlockPictureDescription("unlockPictureDescription");

void LeaveObjectAlone(REALobjectStruct*) {}

/// Callers do not check these two entries: a host without one gets a function that does nothing.
void LoadObjectEntry(void (*&entry)(REALobjectStruct*), const char* name) {
    entry = reinterpret_cast<void (*)(REALobjectStruct*)>(HCallResolver(name));
    if (!entry) entry = LeaveObjectAlone;
}

}  // namespace

void* HCallResolver(const char* name) { return gResolver ? gResolver(name) : nullptr; }

void LoadCommonEntryPoints(double /*hostVersion*/) {
    LoadObjectEntry(ELockObject, "REALLockObject");
    LoadObjectEntry(EUnlockObject, "REALUnlockObject");
}

void REALRegisterClass(REALclassDefinition* record) { pRegisterClass(record); }

void REALRegisterModule(REALmoduleDefinition* record) { pRegisterModule(record); }

double REALGetRBVersion() { return pGetRBVersion(); }

REALclassRef REALGetClassRef(const char* name) { return pGetClassRef(name); }

REALobjectStruct* REALnewInstanceWithClass(REALclassRef type) {
    // The look-up comes first, also for a null class.
    if (!pnewInstanceWithClass.Resolve() || !type) return nullptr;
    return pnewInstanceWithClass(type);
}

void* REALLoadObjectMethod(REALobjectStruct* object, const char* declaration) {
    return pLoadObjectMethod(object, declaration);
}

bool REALGetPropValueObject(REALobjectStruct* object, const char* name, REALobjectStruct** value) {
    return pGetPropValueObject(object, name, value) != 0;
}

bool REALGetPropValueInteger(REALobjectStruct* object, const char* name, std::int64_t* value) {
    return pGetPropValueInteger(object, name, value) != 0;
}

bool REALLockPictureDescription(REALobjectStruct* picture, REALpictureDescription* description, std::uint32_t type) {
    return pLockPictureDescription(picture, description, type) != 0;
}

std::int8_t REALLockPictureDescriptionWithNativeType(REALobjectStruct* picture, REALpictureDescription* description) {
    return pLockPictureDescriptionWithNativeType(picture, description);
}

void REALUnlockPictureDescription(REALobjectStruct* picture) { pUnlockPictureDescription(picture); }

}  // namespace ombrix
