#include "catalogue/refusal.h"

#include "text/names.h"

namespace ombrix::catalogue {

namespace {

std::int64_t ValueOf(host::Host& host, const host::ClassInfo& type, const std::vector<GivenValue>& given,
                     const host::PropertyInfo& property) {
    for (const GivenValue& each : given) {
        if (each.value.IsInteger() && text::SameName(each.property, property.name)) return each.value.AsInteger();
    }
    return host.New(type.name).Get(property.name).AsInteger();
}

}  // namespace

Prepare WithValues(std::vector<GivenValue> values, const std::string& without) {
    return [values = std::move(values), without](const host::Object& object) {
        for (const GivenValue& each : values) {
            if (!text::SameName(each.property, without)) object.Set(each.property, each.value);
        }
    };
}

std::optional<Refusal> FindRefusal(host::Host& host, const host::ClassInfo& type, const std::vector<GivenValue>& given,
                                   const Prepare& setPictures) {
    if (!host.IsA(type.name, host::kEffectInterface)) return std::nullopt;
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            if (!text::SameName(property.type, "Integer") || property.readOnly) continue;
            const Prepare others = WithValues(given, property.name);
            const auto range = AcceptedRange(host, type, property, [&](const host::Object& object) {
                setPictures(object);
                others(object);
            });
            const std::int64_t value = ValueOf(host, type, given, property);
            const bool isRefused = range && ((range->low != -kFarthest && value < range->low) ||
                                             (range->high != kFarthest && value > range->high));
            if (isRefused) return Refusal{property, value, *range};
        }
    }
    return std::nullopt;
}

}  // namespace ombrix::catalogue
