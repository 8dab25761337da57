#include "cli/reflection.h"

#include "cli/failure.h"
#include "cli/values.h"
#include "host/text.h"

namespace ombrix::cli {

using host::SameName;

namespace {

/// What a user may leave out at the end of a class's name.
constexpr std::string_view kEnding = "Effect";

template <class Test>
const host::PropertyInfo* FindPropertyIf(const host::Host& host, const host::ClassInfo& type, Test&& test) {
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const host::PropertyInfo& property : ancestor->properties) {
            if (test(property)) return &property;
        }
    }
    return nullptr;
}

}  // namespace

const host::ClassInfo* FindClass(const host::Host& host, std::string_view name) {
    if (const host::ClassInfo* exact = host.FindClass(name)) return exact;
    return host.FindClass(std::string(name).append(kEnding));
}

const host::ClassInfo& FindEffect(const host::Host& host, std::string_view name) {
    const host::ClassInfo* type = FindClass(host, name);
    if (type && Implements(host, *type, kEffectInterface)) return *type;
    std::vector<std::string> effects;
    for (const host::ClassInfo& candidate : host.Classes()) {
        if (Implements(host, candidate, kEffectInterface)) effects.push_back(candidate.name);
    }
    // Compared with their endings on: short names are then not too short to be told apart.
    const bool isWhole = host::LowerCase(name).ends_with(host::LowerCase(kEnding));
    const std::string wanted = isWhole ? std::string(name) : std::string(name).append(kEnding);
    const std::string what =
        type ? type->name + " is a class, but not an effect" : "there is no effect " + host::Quoted(name);
    throw UsageError(what + host::Suggestion(wanted, effects));
}

bool Implements(const host::Host& host, const host::ClassInfo& type, std::string_view interface) {
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        for (const std::string& implemented : ancestor->interfaces) {
            if (SameName(implemented, interface)) return true;
        }
    }
    return false;
}

const host::PropertyInfo* FindProperty(const host::Host& host, const host::ClassInfo& type, std::string_view name) {
    return FindPropertyIf(host, type,
                          [name](const host::PropertyInfo& property) { return SameName(property.name, name); });
}

const host::PropertyInfo* FindProgressProperty(const host::Host& host, const host::ClassInfo& type) {
    return FindPropertyIf(host, type, [](const host::PropertyInfo& property) {
        return SameName(property.type, kProgressInterface) && !property.readOnly;
    });
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
    throw UsageError("there is no class or module " + host::Quoted(name) + host::Suggestion(name, names));
}

}  // namespace ombrix::cli
