// The host's services as ordinary functions. Each looks its entry up by name on first use and keeps it; a service that
// the host does not have gives an empty result (null, 0, false) and is asked for again the next time.
//
// All of them are called on the thread on which the host called the plug-in, never from a row worker.
#pragma once

#include <cstdint>

#include "frame/definition_records.h"
#include "frame/process_state.h"

namespace ombrix {

/// What the host's resolver answers for a name, null when it has no such service. Nothing is kept.
void* HCallResolver(const char* name);

/// Resolves ELockObject and EUnlockObject.
void LoadCommonEntryPoints(double hostVersion);

/// The data of one class in an instance. Meaningful once the host has registered the class.
inline void* REALGetClassData(REALobjectStruct* instance, const REALclassDefinition* record) {
    return reinterpret_cast<char*>(instance) + record->dataOffset;
}

void REALRegisterClass(REALclassDefinition* record);
void REALRegisterModule(REALmoduleDefinition* record);

/// The host's version, 0.0 when it does not tell.
double REALGetRBVersion();

/// A class of the host by name, or null.
REALclassRef REALGetClassRef(const char* name);

/// A new object of a class, whose reference is the caller's; null for a null class, or when the host makes none. The
/// constructors that take arguments have not been called.
REALobjectStruct* REALnewInstanceWithClass(REALclassRef type);

/// The entry of an object's method by declaration, null when it has none. The caller knows the function's type.
void* REALLoadObjectMethod(REALobjectStruct* object, const char* declaration);

/// Reads a property. False when the object has none of that name and type; `value` is then not to be read. A
/// reference that comes back is the caller's.
bool REALGetPropValueObject(REALobjectStruct* object, const char* name, REALobjectStruct** value);
bool REALGetPropValueInteger(REALobjectStruct* object, const char* name, std::int64_t* value);

/// Locks a picture's pixels and describes them in the form asked for. True when it is locked: one
/// REALUnlockPictureDescription is then due.
bool REALLockPictureDescription(REALobjectStruct* picture, REALpictureDescription* description, std::uint32_t type);

/// The same in the picture's own form; non-zero when it is locked.
std::int8_t REALLockPictureDescriptionWithNativeType(REALobjectStruct* picture, REALpictureDescription* description);

void REALUnlockPictureDescription(REALobjectStruct* picture);

}  // namespace ombrix
