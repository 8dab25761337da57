#include "cli/reflection.h"

#include "catalogue/constants.h"
#include "catalogue/words.h"
#include "cli/failure.h"
#include "cli/values.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::cli {

using catalogue::kEnding;

const host::ClassInfo* FindClass(const host::Host& host, std::string_view name) {
    if (const host::ClassInfo* exact = host.FindClass(name)) return exact;
    return host.FindClass(std::string(name).append(kEnding));
}

const catalogue::Effect& FindEffect(const Session& session, std::string_view name) {
    if (const catalogue::Effect* effect = session.catalogue.Find(name)) return *effect;
    const host::ClassInfo* type = FindClass(session.host, name);
    std::vector<std::string> effects;
    for (const catalogue::Effect& effect : session.catalogue.Effects()) effects.push_back(effect.Name());
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

std::vector<catalogue::Constant> ConstantsOf(const host::Host& host, const host::ClassInfo& type) {
    std::vector<host::ConstantInfo> constants;
    for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) {
        constants.insert(constants.end(), ancestor->constants.begin(), ancestor->constants.end());
    }
    return catalogue::WithWords(constants);
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
