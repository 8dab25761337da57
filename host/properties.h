// Properties, read and written as their rows say.
#pragma once

#include <optional>
#include <string_view>

#include "host/host_state.h"
#include "host/invoke.h"

namespace ombrix::host {

/// A property, and the class of the object's ancestry that has it.
struct FoundProperty {
    const Class* owner = nullptr;
    const Property* property = nullptr;
};

/// A property by name, in any case, looked for from the class upwards.
std::optional<FoundProperty> FindProperty(const Class& type, std::string_view name);

/// Reads a property. A reference that comes with it belongs to the caller, as one of the plug-ins'.
Word ReadProperty(HostState& host, REALobjectStruct* object, const FoundProperty& found);

/// Writes a property that has a setter. The value is of the property's type; its reference stays the caller's.
void WriteProperty(HostState& host, REALobjectStruct* object, const FoundProperty& found, Word value);

}  // namespace ombrix::host
