#include "catalogue/property_values.h"

#include <string>

#include "catalogue/arguments.h"
#include "catalogue/constants.h"
#include "text/names.h"

namespace ombrix::catalogue {

namespace {

/// Gives the effect the pictures that it cannot do without: none, one, or all. With a value of `property` that it
/// takes, if there is one.
Prepare WithNeededPictures(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property) {
    std::vector<std::string> all;
    for (const host::PropertyInfo* each : OwnProperties(host, type)) {
        if (text::SameName(each->type, "Picture")) all.push_back(each->name);
    }
    std::vector<std::vector<std::string>> choices{{}};
    for (const std::string& one : all) choices.push_back({one});
    choices.push_back(all);
    const bool isInteger = text::SameName(property.type, "Integer");
    for (const std::vector<std::string>& choice : choices) {
        const Prepare prepare = WithTrialPictures(host, choice);
        const bool works = isInteger ? AcceptedRange(host, type, property, prepare).has_value()
                                     : static_cast<bool>(Tried(host, type, host.NewPicture(1, 1), prepare));
        if (works) return prepare;
    }
    return WithTrialPictures(host, {});
}

}  // namespace

PropertyValues FindValues(host::Host& host, const host::ClassInfo& type, const host::PropertyInfo& property) {
    PropertyValues values{
        .initial = host.New(type.name).Get(property.name), .constants = {}, .range = {}, .bounds = {}};
    if (!host.IsA(type.name, host::kEffectInterface)) return values;
    if (text::SameName(property.type, "Integer")) {
        const Prepare prepare = WithNeededPictures(host, type, property);
        values.constants = ConstantsFor(host, type, property, prepare);
        if (!values.constants.empty()) return values;
        values.range = AcceptedRange(host, type, property, prepare);
        values.isRefused = values.range && !values.range->Holds(values.initial.AsInteger());
    } else if (text::SameName(property.type, "Double")) {
        values.bounds = MeaningfulBounds(host, type, property, WithNeededPictures(host, type, property));
    }
    return values;
}

}  // namespace ombrix::catalogue
