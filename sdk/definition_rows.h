// Builders for the rows of definition tables, so that no column can be got wrong.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

#include "sdk/definition_records.h"

namespace ombrix {

/// A property that the host reads and stores, at byte `offset` of the class's instance data.
constexpr REALpropertyDefinition StandardProperty(const char* name, const char* type, std::size_t offset,
                                                  std::int64_t flags = 0) {
    return {.reserved0 = 0,
            .name = name,
            .type = type,
            .flags = flags,
            .getter = {.word = kStandardAccessor},
            .setter = {.word = kStandardAccessor},
            .parameter = static_cast<std::int64_t>(offset),
            .reserved56 = {}};
}

/// The same, read-only.
constexpr REALpropertyDefinition ReadOnlyStandardProperty(const char* name, const char* type, std::size_t offset,
                                                          std::int64_t flags = 0) {
    REALpropertyDefinition row = StandardProperty(name, type, offset, flags);
    row.setter = {.word = kNoAccessor};
    return row;
}

/// A property with functions for getter and setter. Their parameter is 0.
template <class Value>
REALpropertyDefinition CustomProperty(const char* name, const char* type,
                                      Value (*getter)(REALobjectStruct*, std::int64_t),
                                      void (*setter)(REALobjectStruct*, std::int64_t, Value), std::int64_t flags = 0) {
    return {.reserved0 = 0,
            .name = name,
            .type = type,
            .flags = flags,
            .getter = {.function = reinterpret_cast<REALproc>(getter)},
            .setter = {.function = reinterpret_cast<REALproc>(setter)},
            .parameter = 0,
            .reserved56 = {}};
}

/// The same, read-only.
template <class Value>
REALpropertyDefinition ReadOnlyCustomProperty(const char* name, const char* type,
                                              Value (*getter)(REALobjectStruct*, std::int64_t),
                                              std::int64_t flags = 0) {
    return CustomProperty<Value>(name, type, getter, nullptr, flags);
}

/// Not constexpr: constant expressions cannot cast a function's address.
template <class Result, class... Parameters>
REALmethodDefinition Method(Result (*function)(Parameters...), const char* declaration, std::int64_t flags = 0) {
    return {.function = reinterpret_cast<REALproc>(function),
            .reserved8 = 0,
            .declaration = declaration,
            .flags = flags,
            .reserved32 = {}};
}

/// `declaration` is "NAME = value".
constexpr REALconstantDefinition Constant(const char* declaration) {
    return {.declaration = declaration, .reserved8 = {}};
}

/// What a class record can say.
struct ClassRows {
    const char* name = nullptr;
    const char* superclass = nullptr;
    const char* interfaces = nullptr;
    std::size_t dataSize = 0;
    void (*constructor)(REALobjectStruct*) = nullptr;
    void (*destructor)(REALobjectStruct*) = nullptr;
    std::span<const REALpropertyDefinition> properties = {};
    std::span<const REALmethodDefinition> methods = {};
    std::span<const REALconstantDefinition> constants = {};
};

constexpr REALclassDefinition ClassRecord(const ClassRows& rows) {
    REALclassDefinition record{};
    record.version = kDefinitionVersion;
    record.name = rows.name;
    record.superclass = rows.superclass;
    record.dataSize = static_cast<std::int64_t>(rows.dataSize);
    record.constructor = rows.constructor;
    record.destructor = rows.destructor;
    record.properties = rows.properties.data();
    record.propertyCount = std::ssize(rows.properties);
    record.methods = rows.methods.data();
    record.methodCount = std::ssize(rows.methods);
    record.interfaces = rows.interfaces;
    record.constants = rows.constants.data();
    record.constantCount = std::ssize(rows.constants);
    return record;
}

constexpr REALmoduleDefinition ModuleRecord(const char* name, std::span<const REALmethodDefinition> methods,
                                            std::span<const REALconstantDefinition> constants) {
    REALmoduleDefinition record{};
    record.version = kDefinitionVersion;
    record.name = name;
    record.methods = methods.data();
    record.methodCount = std::ssize(methods);
    record.constants = constants.data();
    record.constantCount = std::ssize(constants);
    return record;
}

}  // namespace ombrix
