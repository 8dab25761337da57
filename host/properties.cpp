#include "host/properties.h"

#include <cstring>

#include "text/names.h"

namespace ombrix::host {
namespace {

void* Storage(REALobjectStruct* object, const FoundProperty& found) {
    return static_cast<std::byte*>(ClassData(object, *found.owner->definition)) + found.property->row->parameter;
}

/// Adds no reference. Stored values need not be aligned.
Word Load(REALobjectStruct* object, const FoundProperty& found) {
    Word word;
    std::memcpy(&word, Storage(object, found), SizeOf(found.property->kind));
    return word;
}

/// Null, and a fault, for a handle of no live object.
REALobjectStruct* LiveOrNil(HostState& host, REALobjectStruct* handle, const FoundProperty& found) {
    if (handle == nullptr || host.objects.IsLive(handle)) return handle;
    host.watch.NoteFault(found.owner->info.name + "." + found.property->name + " is " + host.objects.Describe(handle));
    return nullptr;
}

}  // namespace

std::optional<FoundProperty> FindProperty(const Class& type, std::string_view name) {
    FoundProperty found;
    found.owner = type.FindUpwards([&](const Class& ancestor) {
        for (const Property& property : ancestor.properties) {
            if (text::SameName(property.name, name)) found.property = &property;
        }
        return found.property != nullptr;
    });
    return found.property == nullptr ? std::nullopt : std::optional(found);
}

Word ReadProperty(HostState& host, REALobjectStruct* object, const FoundProperty& found) {
    const REALpropertyDefinition& row = *found.property->row;
    const Kind kind = found.property->kind;
    const bool stored = row.getter.word == kStandardAccessor;
    TypedWord arguments[] = {{Kind::Object, {.object = object}}, {Kind::Integer, {.integer = row.parameter}}};
    Word word = stored ? Load(object, found) : Invoke(row.getter.function, arguments, kind);
    if (kind == Kind::Object) {
        word.object = LiveOrNil(host, word.object, found);
        // Getters add a reference for the reader; stored handles come without.
        if (stored && word.object != nullptr) host.objects.Retain(word.object);
    }
    return word;
}

void WriteProperty(HostState& host, REALobjectStruct* object, const FoundProperty& found, Word value) {
    const REALpropertyDefinition& row = *found.property->row;
    const Kind kind = found.property->kind;
    if (row.setter.word != kStandardAccessor) {
        TypedWord arguments[] = {
            {Kind::Object, {.object = object}}, {Kind::Integer, {.integer = row.parameter}}, {kind, value}};
        Invoke(row.setter.function, arguments, std::nullopt);
        return;
    }
    if (kind == Kind::Boolean) value.boolean = value.boolean != 0;
    if (kind != Kind::Object) {
        std::memcpy(Storage(object, found), &value, SizeOf(kind));
        return;
    }
    // The new one first: it may be the old one. The class's destructor releases what is stored.
    if (value.object != nullptr) host.objects.Retain(value.object);
    REALobjectStruct* old = LiveOrNil(host, Load(object, found).object, found);
    std::memcpy(Storage(object, found), &value, SizeOf(kind));
    if (old != nullptr) host.objects.Release(old);
}

}  // namespace ombrix::host
