// The records by which a plug-in declares its classes and modules to a host, and the description of a locked picture.
// Records are static, since the host keeps their addresses. An empty table is null; reserved slots are 0.
#pragma once

#include <cstddef>
#include <cstdint>

/// A host object (a picture, a point, an effect).
struct REALobjectStruct;

/// A class of the host.
using REALclassRef = struct REALclassStruct*;

/// A function whose type the declaration beside it states.
using REALproc = void (*)();

/// Finds a service of the host by name; null when it has none.
using REALresolver = void* (*)(const char* name);

inline constexpr std::int64_t kDefinitionVersion = 13;

union REALpropertyAccessor {
    std::intptr_t word;  ///< kStandardAccessor, kNoAccessor
    REALproc function;   ///< getter: (instance, parameter) -> value; setter: (instance, parameter, value)
};
/// The host reads or stores the value itself, at offset `parameter` of the class's instance data.
inline constexpr std::intptr_t kStandardAccessor = -1;
/// The setter of a read-only property.
inline constexpr std::intptr_t kNoAccessor = 0;

struct REALpropertyDefinition {
    std::int64_t reserved0;
    const char* name;
    const char* type;  ///< "Integer", "Boolean", "Double", "Picture", "Point" or the name of an interface
    std::int64_t flags;
    REALpropertyAccessor getter;
    REALpropertyAccessor setter;
    std::int64_t parameter;  ///< a byte offset, or the functions' second argument
    std::int64_t reserved56[5];
};
static_assert(sizeof(REALpropertyDefinition) == 96);
static_assert(offsetof(REALpropertyDefinition, name) == 8 && offsetof(REALpropertyDefinition, type) == 16 &&
              offsetof(REALpropertyDefinition, flags) == 24 && offsetof(REALpropertyDefinition, getter) == 32 &&
              offsetof(REALpropertyDefinition, setter) == 40 && offsetof(REALpropertyDefinition, parameter) == 48);

struct REALmethodDefinition {
    REALproc function;  ///< class: (instance, declared parameters…); module: (declared parameters…)
    std::int64_t reserved8;
    const char* declaration;  ///< in the host's language, "Apply(source as Picture) as Picture"
    std::int64_t flags;
    std::int64_t reserved32[2];
};
static_assert(sizeof(REALmethodDefinition) == 48);
static_assert(offsetof(REALmethodDefinition, declaration) == 16 && offsetof(REALmethodDefinition, flags) == 24);

struct REALconstantDefinition {
    const char* declaration;  ///< "NAME = value"
    std::int64_t reserved8[4];
};
static_assert(sizeof(REALconstantDefinition) == 40);

struct REALclassDefinition {
    std::int64_t version;  ///< kDefinitionVersion
    const char* name;
    const char* superclass;  ///< null for none
    std::int64_t dataSize;   ///< bytes of instance data, without the superclasses'
    /// Byte offset of that data in an instance; the host writes it.
    std::int64_t dataOffset;
    void (*constructor)(REALobjectStruct* instance);
    void (*destructor)(REALobjectStruct* instance);
    const REALpropertyDefinition* properties;
    std::int64_t propertyCount;
    const REALmethodDefinition* methods;
    std::int64_t methodCount;
    std::int64_t reserved88[4];
    const char* interfaces;  ///< separated by commas without blanks; null for none
    std::int64_t reserved128[2];
    const REALconstantDefinition* constants;
    std::int64_t constantCount;
    std::uint32_t flags;  ///< kClassConsoleSafe, kClassWebOnly
    std::uint32_t reserved164;
    std::int64_t reserved168[9];
};
static_assert(sizeof(REALclassDefinition) == 240);
static_assert(offsetof(REALclassDefinition, dataSize) == 24 && offsetof(REALclassDefinition, dataOffset) == 32 &&
              offsetof(REALclassDefinition, constructor) == 40 && offsetof(REALclassDefinition, destructor) == 48 &&
              offsetof(REALclassDefinition, properties) == 56 && offsetof(REALclassDefinition, methods) == 72 &&
              offsetof(REALclassDefinition, methodCount) == 80 && offsetof(REALclassDefinition, interfaces) == 120 &&
              offsetof(REALclassDefinition, constants) == 144 && offsetof(REALclassDefinition, constantCount) == 152 &&
              offsetof(REALclassDefinition, flags) == 160);

inline constexpr std::uint32_t kClassConsoleSafe = 0x4;  // usable in programs without a user interface
inline constexpr std::uint32_t kClassWebOnly = 0x100;    // usable in web programs only

struct REALmoduleDefinition {
    std::int64_t version;  ///< kDefinitionVersion
    const char* name;
    const REALmethodDefinition* methods;
    std::int64_t methodCount;
    const REALconstantDefinition* constants;
    std::int64_t constantCount;
    std::int64_t reserved48[18];
};
static_assert(sizeof(REALmoduleDefinition) == 192);
static_assert(offsetof(REALmoduleDefinition, methods) == 16 && offsetof(REALmoduleDefinition, constants) == 32 &&
              offsetof(REALmoduleDefinition, constantCount) == 40);

struct REALpictureDescription {
    std::uint32_t type;  ///< kBitmapContextPicture, or another kind
    std::uint32_t reserved4;
    void* data;           ///< for kBitmapContextPicture, a CGContextRef
    std::int32_t width;   ///< pixels
    std::int32_t height;  ///< rows
    std::int64_t reserved24;
};
static_assert(sizeof(REALpictureDescription) == 32);
static_assert(offsetof(REALpictureDescription, data) == 8 && offsetof(REALpictureDescription, width) == 16 &&
              offsetof(REALpictureDescription, height) == 20);

inline constexpr std::uint32_t kBitmapContextPicture = 8;
