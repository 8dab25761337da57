#include "host/services.h"

#include <cstdint>
#include <string_view>

#include "host/own_classes.h"
#include "host/properties.h"
#include "host/serve.h"
#include "ombrix/error.h"

namespace ombrix::host {
namespace {

// ---- Registration -------------------------------------------------------------------------------------------

/// Adds a record of the plug-in that is being loaded. The first bad record ends the loading; the rest are not looked
/// at.
template <class Add>
std::int32_t Register(const char* service, Add add) {
    return Serve<std::int32_t>(service, [&](HostState& host) {
        if (host.loading == nullptr) {
            host.watch.Fault("called " + std::string(service) + " after it was loaded");
            return 0;
        }
        if (host.loading->refusal) return 0;
        try {
            add(host);
            return 1;
        } catch (const Error& error) {
            host.loading->refusal = error.what();
        }
        return 0;
    });
}

std::int32_t RegisterClass(REALclassDefinition* definition) {
    return Register("PluginRegisterClass", [&](HostState& host) {
        if (definition == nullptr) throw Error("a class was registered without a record");
        host.registry.AddClass(*definition, host.loading->plugin);
    });
}

std::int32_t RegisterModule(const REALmoduleDefinition* definition) {
    return Register("PluginRegisterModule", [&](HostState& host) {
        if (definition == nullptr) throw Error("a module was registered without a record");
        host.registry.AddModule(*definition, host.loading->plugin);
    });
}

void RegisterPluginVersion(std::int32_t version) {
    Register("RegisterPluginVersion", [&](HostState&) {
        if (version == kDefinitionVersion) return;
        throw Error("its records are of version " + std::to_string(version) + ", and this host reads only version " +
                    std::to_string(kDefinitionVersion));
    });
}

double HostVersion() {
    return Serve<double>("REALGetRBVersion", [](HostState& host) { return host.options.version; });
}

// ---- Objects ------------------------------------------------------------------------------------------------

REALclassRef FindClass(const char* name) {
    constexpr char kService[] = "pluginObjectType";
    return Serve<REALclassRef>(kService, [&](HostState& host) -> REALclassRef {
        if (name == nullptr) {
            host.watch.Fault("passed no name to pluginObjectType");
            return nullptr;
        }
        // Compared and never followed, so that rubbish from plug-ins does no harm; see Registry::FindReference.
        return reinterpret_cast<REALclassRef>(const_cast<Class*>(host.registry.FindClass(name)));
    });
}

REALobjectStruct* CreateInstance(REALclassRef reference) {
    return Serve<REALobjectStruct*>("CreateInstance", [&](HostState& host) -> REALobjectStruct* {
        const Class* type = host.registry.FindReference(reference);
        if (type == nullptr) {
            host.watch.Fault("passed something that is no class to CreateInstance");
            return nullptr;
        }
        return host.objects.Create(*type);
    });
}

void LockObject(REALobjectStruct* object) {
    if (object == nullptr) return;
    Serve<void>("REALLockObject", [&](HostState& host) {
        if (host.Passed(object, "REALLockObject") != nullptr) host.objects.Retain(object);
    });
}

void UnlockObject(REALobjectStruct* object) {
    if (object == nullptr) return;
    Serve<void>("REALUnlockObject", [&](HostState& host) {
        if (host.Passed(object, "REALUnlockObject") != nullptr) host.objects.Release(object);
    });
}

void* LoadObjectMethod(REALobjectStruct* object, const char* declaration) {
    return Serve<void*>("REALLoadObjectMethod", [&](HostState& host) -> void* {
        if (host.Passed(object, "REALLoadObjectMethod") == nullptr) return nullptr;
        try {
            const std::string signature = ParseMethod(declaration == nullptr ? "" : declaration).Signature();
            const Method* method = FindMethod(*object->type, signature);
            return method == nullptr ? nullptr : reinterpret_cast<void*>(method->function);
        } catch (const Error& error) {
            host.watch.Fault(std::string("asked for a method by a declaration that cannot be read: ") + error.what());
        }
        return nullptr;
    });
}

/// With its reference. Nothing when the object has no property of this kind.
std::optional<Word> PropertyOfKind(HostState& host, const char* service, REALobjectStruct* object, const char* name,
                                   const void* result, Kind kind) {
    if (host.Passed(object, service) == nullptr) return std::nullopt;
    if (name == nullptr || result == nullptr) {
        host.watch.Fault("passed " + std::string(service) + " no name or nowhere to put the value");
        return std::nullopt;
    }
    const std::optional<FoundProperty> found = FindProperty(*object->type, name);
    if (!found || found->property->kind != kind) return std::nullopt;
    return ReadProperty(host, object, *found);
}

/// False also for nil: after true, callers use the object.
bool ObjectProperty(REALobjectStruct* object, const char* name, REALobjectStruct** result) {
    constexpr char kService[] = "REALGetPropValueObject";
    return Serve<bool>(kService, [&](HostState& host) {
        if (result != nullptr) *result = nullptr;
        const std::optional<Word> value = PropertyOfKind(host, kService, object, name, result, Kind::Object);
        if (!value) return false;
        *result = value->object;
        return value->object != nullptr;
    });
}

bool IntegerProperty(REALobjectStruct* object, const char* name, std::int64_t* result) {
    constexpr char kService[] = "REALGetPropValueInteger";
    return Serve<bool>(kService, [&](HostState& host) {
        const std::optional<Word> value = PropertyOfKind(host, kService, object, name, result, Kind::Integer);
        if (value) *result = value->integer;
        return value.has_value();
    });
}

// ---- Pictures -----------------------------------------------------------------------------------------------

/// Locks a picture. With a `type`, only a picture of that type.
bool Lock(const char* service, REALobjectStruct* picture, REALpictureDescription* description,
          std::optional<std::uint32_t> type) {
    return Serve<bool>(service, [&](HostState& host) {
        if (host.Passed(picture, service, kPictureClass) == nullptr) return false;
        if (description == nullptr) {
            host.watch.Fault("passed no description to " + std::string(service));
            return false;
        }
        REALpictureDescription filled;
        if (!PictureOf(picture).Describe(filled) || (type && filled.type != *type)) return false;
        host.watch.AddLock(picture, Watch::Locker::Plugin);
        *description = filled;
        return true;
    });
}

bool LockDescription(REALobjectStruct* picture, REALpictureDescription* description, std::uint32_t type) {
    return Lock("REALLockPictureDescription", picture, description, type);
}

bool LockNativeDescription(REALobjectStruct* picture, REALpictureDescription* description) {
    return Lock("lockPictureDescription", picture, description, std::nullopt);
}

void UnlockDescription(REALobjectStruct* picture) {
    constexpr char kService[] = "unlockPictureDescription";
    Serve<void>(kService, [&](HostState& host) {
        if (host.Passed(picture, kService, kPictureClass) == nullptr) return;
        host.watch.EndLock(picture, Watch::Locker::Plugin, host.objects.Describe(picture));
    });
}

// ---- The table ----------------------------------------------------------------------------------------------

struct Service {
    std::string_view name;
    REALproc entry;
};

template <class Entry>
Service MakeService(std::string_view name, Entry* entry) {
    return {name, reinterpret_cast<REALproc>(entry)};
}

const Service kServices[] = {
    MakeService("PluginRegisterClass", &RegisterClass),
    MakeService("PluginRegisterModule", &RegisterModule),
    MakeService("RegisterPluginVersion", &RegisterPluginVersion),
    MakeService("REALGetRBVersion", &HostVersion),
    MakeService("pluginObjectType", &FindClass),
    MakeService("CreateInstance", &CreateInstance),
    MakeService("REALLockObject", &LockObject),
    MakeService("REALUnlockObject", &UnlockObject),
    MakeService("REALLoadObjectMethod", &LoadObjectMethod),
    MakeService("REALGetPropValueObject", &ObjectProperty),
    MakeService("REALGetPropValueInteger", &IntegerProperty),
    MakeService("REALLockPictureDescription", &LockDescription),
    MakeService("lockPictureDescription", &LockNativeDescription),
    MakeService("unlockPictureDescription", &UnlockDescription),
};

}  // namespace

void* Resolve(const char* name) noexcept {
    return Serve<void*>("the resolver", [&](HostState& host) -> void* {
        if (name == nullptr || host.options.withheldServices.contains(std::string_view(name))) return nullptr;
        for (const Service& service : kServices) {
            if (service.name == name) return reinterpret_cast<void*>(service.entry);
        }
        return nullptr;
    });
}

}  // namespace ombrix::host
