// Reads and writes properties as their rows say.
#pragma once

#include <optional>
#include <string_view>

#include "host/host_state.h"
#include "host/invoke.h"

namespace ombrix::host {

/// A property, and the class that declares it.
struct FoundProperty {
    const Class* owner = nullptr;
    const Property* property = nullptr;
};

/// Looks in the class, then in its superclasses.
std::optional<FoundProperty> FindProperty(const Class& type, std::string_view name);

/// A reference that comes with the value is a plug-in's, for the caller to release.
Word ReadProperty(HostState& host, REALobjectStruct* object, const FoundProperty& found);

/// The property has a setter, the value its type. The caller keeps its reference.
void WriteProperty(HostState& host, REALobjectStruct* object, const FoundProperty& found, Word value);

}  // namespace ombrix::host
