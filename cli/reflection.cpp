#include "cli/reflection.h"

#include "cli/failure.h"
#include "cli/values.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::cli {

namespace {

/// Users may leave this out.
constexpr std::string_view kEnding = "Effect";

}  // namespace

const host::ClassInfo* FindClass(const host::Host& host, std::string_view name) {
    if (const host::ClassInfo* exact = host.FindClass(name)) return exact;
    return host.FindClass(std::string(name).append(kEnding));
}

std::string ShortName(const host::Host& host, const host::ClassInfo& type) {
    const std::string whole = text::LowerCase(type.name), ending = text::LowerCase(kEnding);
    if (!whole.ends_with(ending) || whole == ending) return whole;
    std::string shortName = whole.substr(0, whole.size() - ending.size());
    return host.FindClass(shortName) ? whole : shortName;
}

const host::ClassInfo& FindEffect(const host::Host& host, std::string_view name) {
    const host::ClassInfo* type = FindClass(host, name);
    if (type && host.IsA(type->name, host::kEffectInterface)) return *type;
    std::vector<std::string> effects;
    for (const host::ClassInfo& candidate : host.Classes()) {
        if (host.IsA(candidate.name, host::kEffectInterface)) effects.push_back(candidate.name);
    }
    // With its ending a short name has more letters to be recognised by.
    const bool isWhole = text::LowerCase(name).ends_with(text::LowerCase(kEnding));
    const std::string wanted = isWhole ? std::string(name) : std::string(name).append(kEnding);
    const std::string what =
        type ? type->name + " is a class, but not an effect" : "there is no effect " + text::Quoted(name);
    throw UsageError(what + text::Suggestion(wanted, effects));
}

const host::PropertyInfo* FindProgressProperty(const host::Host& host, const host::ClassInfo& type) {
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            if (text::SameName(property.type, host::kProgressInterface) && !property.readOnly) return &property;
        }
    }
    return nullptr;
}

std::vector<std::string> SettableProperties(const host::Host& host, const host::ClassInfo& type) {
    std::vector<std::string> names;
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            if (!property.readOnly && CanBeTyped(property.type)) names.push_back(property.name);
        }
    }
    return names;
}

std::vector<host::ConstantInfo> ConstantsOf(const host::Host& host, const host::ClassInfo& type) {
    std::vector<host::ConstantInfo> constants;
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        constants.insert(constants.end(), ancestor->constants.begin(), ancestor->constants.end());
    }
    return constants;
}

Owner FindOwner(const host::Host& host, std::string_view name) {
    if (const host::ClassInfo* type = FindClass(host, name)) return {type, nullptr};
    if (const host::ModuleInfo* module = host.FindModule(name)) return {nullptr, module};
    std::vector<std::string> names;
    for (const host::ClassInfo& type : host.Classes()) names.push_back(type.name);
    for (const host::ModuleInfo& module : host.Modules()) names.push_back(module.name);
    throw UsageError("there is no class or module " + text::Quoted(name) + text::Suggestion(name, names));
}

}  // namespace ombrix::cli
