// The host's services as functions, for the thread on which the host calls the plug-in, not for row workers. Each is
// looked up by name on first use. One that the host lacks gives null, 0 or false, and is looked up again next time.
#pragma once

#include <cstdint>

#include "sdk/definition_records.h"
#include "sdk/process_state.h"

namespace ombrix {

/// Looks a service up without keeping it; null when the host has none.
void* HCallResolver(const char* name);

/// Resolves ELockObject and EUnlockObject; the version is not used.
void LoadCommonEntryPoints(double hostVersion);

/// A registered class's data in an instance.
inline void* REALGetClassData(REALobjectStruct* instance, const REALclassDefinition* record) {
    return reinterpret_cast<char*>(instance) + record->dataOffset;
}

void REALRegisterClass(REALclassDefinition* record);
void REALRegisterModule(REALmoduleDefinition* record);

/// The host's version.
double REALGetRBVersion();

/// A class of the host by name, or null.
REALclassRef REALGetClassRef(const char* name);

/// A new object, owned by the caller; constructors with arguments have not been called. Null for a null `type`, or when
/// the host makes none.
REALobjectStruct* REALnewInstanceWithClass(REALclassRef type);

/// An object's method by its declaration, to be cast to the function's type; null when it has none.
void* REALLoadObjectMethod(REALobjectStruct* object, const char* declaration);

/// Reads a property. False, and `value` invalid, when there is none of that name and type. An object that is read is
/// owned by the caller.
bool REALGetPropValueObject(REALobjectStruct* object, const char* name, REALobjectStruct** value);
bool REALGetPropValueInteger(REALobjectStruct* object, const char* name, std::int64_t* value);

/// Locks a picture and describes it as `type`. True when locked: one REALUnlockPictureDescription is then due.
bool REALLockPictureDescription(REALobjectStruct* picture, REALpictureDescription* description, std::uint32_t type);

/// The same, as the picture's own type; non-zero when locked.
std::int8_t REALLockPictureDescriptionWithNativeType(REALobjectStruct* picture, REALpictureDescription* description);

void REALUnlockPictureDescription(REALobjectStruct* picture);

}  // namespace ombrix
