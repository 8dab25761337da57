// What the arguments of an effect's methods stand for among its properties.
#pragma once

#include <functional>
#include <string_view>
#include <vector>

#include "ombrix/api.h"
#include "ombrix/host.h"

namespace ombrix::catalogue {

/// The property that weights an effect; programs give it by this name.
inline constexpr std::string_view kMaskProperty = "Mask";

/// The property that an argument stands for: the one of its name, or the only one left of its type, or null. `type` is
/// an effect, and `method` one of its methods named Apply or ApplyInPlace. Valid until the next Load.
OMBRIX_API const host::PropertyInfo* PropertyOf(const host::Host& host, const host::ClassInfo& type,
                                                const host::MethodInfo& method, const host::ParameterInfo& parameter);

/// The effect's own properties in the order in which people give them without names: kinds to choose from that Apply
/// takes no argument for, then the arguments of the longest Apply without source and mask. Where Apply takes nothing
/// but a source, all own properties without the mask, as registered. `isKind`: whether a property has constants to
/// choose from. Valid until the next Load.
std::vector<const host::PropertyInfo*> PropertiesByPosition(
    const host::Host& host, const host::ClassInfo& type, const std::function<bool(const host::PropertyInfo&)>& isKind);

/// The effect's own properties that can be set: without those of base classes that are no effects.
OMBRIX_API std::vector<const host::PropertyInfo*> OwnProperties(const host::Host& host, const host::ClassInfo& type);

}  // namespace ombrix::catalogue
