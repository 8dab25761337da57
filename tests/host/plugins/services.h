// The host's services with their types, for test plug-ins and for tests.
#pragma once

#include <cstdint>
#include <type_traits>

#include "sdk/definition_records.h"

/// Exported by these plug-ins: the resolver that they were given.
using GivenResolverFunction = REALresolver (*)();

struct Services {
    explicit Services(REALresolver resolver) {
        const auto find = [&](auto& entry, const char* name) {
            entry = reinterpret_cast<std::remove_reference_t<decltype(entry)>>(resolver(name));
        };
        find(registerClass, "PluginRegisterClass");
        find(registerModule, "PluginRegisterModule");
        find(registerPluginVersion, "RegisterPluginVersion");
        find(version, "REALGetRBVersion");
        find(findClass, "pluginObjectType");
        find(createInstance, "CreateInstance");
        find(loadMethod, "REALLoadObjectMethod");
        find(objectProperty, "REALGetPropValueObject");
        find(integerProperty, "REALGetPropValueInteger");
        find(lockDescription, "REALLockPictureDescription");
        find(lockNative, "lockPictureDescription");
        find(unlockDescription, "unlockPictureDescription");
        find(lockObject, "REALLockObject");
        find(unlockObject, "REALUnlockObject");
    }

    std::int32_t (*registerClass)(REALclassDefinition*);
    std::int32_t (*registerModule)(REALmoduleDefinition*);
    void (*registerPluginVersion)(std::int32_t);
    double (*version)();
    REALclassRef (*findClass)(const char*);
    REALobjectStruct* (*createInstance)(REALclassRef);
    void* (*loadMethod)(REALobjectStruct*, const char*);
    bool (*objectProperty)(REALobjectStruct*, const char*, REALobjectStruct**);
    bool (*integerProperty)(REALobjectStruct*, const char*, std::int64_t*);
    bool (*lockDescription)(REALobjectStruct*, REALpictureDescription*, std::uint32_t);
    bool (*lockNative)(REALobjectStruct*, REALpictureDescription*);
    void (*unlockDescription)(REALobjectStruct*);
    void (*lockObject)(REALobjectStruct*);
    void (*unlockObject)(REALobjectStruct*);
};

/// A class's data in an object.
template <class Data>
Data* DataOf(REALobjectStruct* instance, const REALclassDefinition& definition) {
    return reinterpret_cast<Data*>(reinterpret_cast<char*>(instance) + definition.dataOffset);
}

#define OMBRIX_TEST_EXPORT extern "C" __attribute__((visibility("default")))
