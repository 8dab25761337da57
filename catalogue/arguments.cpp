#include "catalogue/arguments.h"

#include <algorithm>
#include <ranges>

#include "text/names.h"

namespace ombrix::catalogue {

namespace {

using host::ParameterInfo;
using host::PropertyInfo;

bool IsSource(const host::MethodInfo& method, const ParameterInfo& parameter) {
    return !method.parameters.empty() && text::SameName(method.parameters.front().name, parameter.name) &&
           text::SameName(parameter.type, "Picture");
}

bool HasName(const PropertyInfo* property, std::string_view name) { return text::SameName(property->name, name); }

}  // namespace

std::vector<const PropertyInfo*> OwnProperties(const host::Host& host, const host::ClassInfo& type) {
    std::vector<const PropertyInfo*> own;
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        if (!host.IsA(ancestor->name, host::kEffectInterface)) continue;
        for (const PropertyInfo& property : ancestor->properties) {
            if (!property.readOnly) own.push_back(&property);
        }
    }
    return own;
}

const PropertyInfo* PropertyOf(const host::Host& host, const host::ClassInfo& type, const host::MethodInfo& method,
                               const ParameterInfo& parameter) {
    if (IsSource(method, parameter)) return nullptr;
    const std::vector<const PropertyInfo*> own = OwnProperties(host, type);
    const auto named = [&own](const ParameterInfo& wanted) {
        const auto found = std::ranges::find_if(own, [&](const auto* each) { return HasName(each, wanted.name); });
        return found == own.end() ? nullptr : *found;
    };
    if (const PropertyInfo* property = named(parameter)) return property;

    const auto isOfType = [&parameter](const auto& each) { return text::SameName(each.type, parameter.type); };
    const auto isLeftOver = [&](const ParameterInfo& each) {
        return isOfType(each) && !IsSource(method, each) && !named(each);
    };
    if (std::ranges::count_if(method.parameters, isLeftOver) != 1) return nullptr;
    const PropertyInfo* left = nullptr;
    for (const PropertyInfo* property : own) {
        const auto isTaken = [property](const ParameterInfo& each) { return HasName(property, each.name); };
        if (!isOfType(*property) || std::ranges::any_of(method.parameters, isTaken)) continue;
        if (left) return nullptr;
        left = property;
    }
    return left;
}

std::vector<const PropertyInfo*> PropertiesByPosition(const host::Host& host, const host::ClassInfo& type,
                                                      const std::function<bool(const PropertyInfo&)>& isKind) {
    const std::vector<host::MethodInfo> overloads = host.FindMethods(type.name, "Apply");
    const auto longest = std::ranges::max_element(
        overloads, {}, [](const host::MethodInfo& method) { return method.parameters.size(); });
    const bool takesOnlySource = longest == overloads.end() || longest->parameters.size() < 2;
    std::vector<const PropertyInfo*> arguments;
    if (!takesOnlySource) {
        for (const ParameterInfo& parameter : longest->parameters) {
            if (const PropertyInfo* property = PropertyOf(host, type, *longest, parameter))
                arguments.push_back(property);
        }
    }
    std::vector<const PropertyInfo*> positions;
    for (const PropertyInfo* property : OwnProperties(host, type)) {
        const bool isArgument = std::ranges::find(arguments, property) != arguments.end();
        if (takesOnlySource || (!isArgument && isKind(*property))) positions.push_back(property);
    }
    positions.insert(positions.end(), arguments.begin(), arguments.end());
    std::erase_if(positions, [](const PropertyInfo* property) { return HasName(property, kMaskProperty); });
    return positions;
}

}  // namespace ombrix::catalogue
