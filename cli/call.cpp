// ombrix call: one method of a class or a module.

#include <algorithm>
#include <iostream>
#include <optional>

#include "cli/effect_object.h"
#include "cli/failure.h"
#include "cli/image_reader.h"
#include "cli/outcome.h"
#include "cli/reflection.h"
#include "cli/result_file.h"
#include "cli/session.h"
#include "cli/text.h"
#include "host/text.h"

namespace ombrix::cli {

namespace {

using host::MethodInfo;
using host::ParameterInfo;
using host::SameName;

std::vector<MethodInfo> MethodsOf(const host::Host& host, const Owner& owner) {
    std::vector<MethodInfo> methods;
    if (owner.module) return owner.module->methods;
    for (const host::ClassInfo* ancestor : host.Ancestry(owner.type->name)) {
        methods.insert(methods.end(), ancestor->methods.begin(), ancestor->methods.end());
    }
    return methods;
}

/// All methods of the name; there is at least one.
std::vector<MethodInfo> FindOverloads(const host::Host& host, const Owner& owner, const std::string& name) {
    std::vector<MethodInfo> overloads = MethodsOf(host, owner);
    std::vector<std::string> names;
    for (const MethodInfo& method : overloads) names.push_back(method.name);
    std::erase_if(overloads, [&name](const MethodInfo& method) { return !SameName(method.name, name); });
    if (overloads.empty()) {
        std::sort(names.begin(), names.end());
        names.erase(std::unique(names.begin(), names.end()), names.end());
        throw UsageError(owner.Name() + " has no method " + host::Quoted(name) +
                         (names.empty() ? "; it has none" : "; it has " + Listed(names)));
    }
    return overloads;
}

const ParameterInfo* FindParameter(const MethodInfo& method, const std::string& name) {
    for (const ParameterInfo& parameter : method.parameters) {
        if (SameName(parameter.name, name)) return &parameter;
    }
    return nullptr;
}

/// Parameters that are missing though nothing stands in for them; a missing object is nil.
std::vector<std::string> MissingIn(const MethodInfo& method, const std::vector<Setting>& arguments) {
    std::vector<std::string> missing;
    for (const ParameterInfo& parameter : method.parameters) {
        const bool plain = SameName(parameter.type, "Integer") || SameName(parameter.type, "Boolean") ||
                           SameName(parameter.type, "Double");
        const bool given = std::any_of(arguments.begin(), arguments.end(), [&parameter](const Setting& argument) {
            return SameName(argument.name, parameter.name);
        });
        if (plain && !given) missing.push_back(parameter.name);
    }
    return missing;
}

/// The overload that the names of the arguments mean: it has them all, and misses as few others as possible.
const MethodInfo& Choose(const std::vector<MethodInfo>& overloads, const std::vector<Setting>& arguments,
                         const std::string& callee) {
    const MethodInfo* chosen = nullptr;
    std::vector<std::string> declarations;
    for (const MethodInfo& method : overloads) {
        declarations.push_back(method.declaration);
        const bool hasAll = std::all_of(arguments.begin(), arguments.end(), [&method](const Setting& argument) {
            return FindParameter(method, argument.name) != nullptr;
        });
        const bool isNearer = !chosen || method.parameters.size() < chosen->parameters.size();
        if (hasAll && MissingIn(method, arguments).empty() && isNearer) chosen = &method;
    }
    if (chosen) return *chosen;
    if (overloads.size() == 1 && std::all_of(arguments.begin(), arguments.end(), [&overloads](const Setting& argument) {
            return FindParameter(overloads.front(), argument.name) != nullptr;
        })) {
        throw UsageError(callee + " also needs " + Listed(MissingIn(overloads.front(), arguments)) + ": it is " +
                         declarations.front());
    }
    throw UsageError(callee + " cannot be called with these arguments; there is " + host::Join(declarations, " and "));
}

/// Takes the settings apart: arguments of some overload, and properties of the class.
void Divide(const std::vector<Setting>& settings, const Owner& owner, const host::Host& host,
            const std::vector<MethodInfo>& overloads, std::vector<Setting>& arguments,
            std::vector<Setting>& properties) {
    for (const Setting& setting : settings) {
        const bool isArgument = std::any_of(overloads.begin(), overloads.end(), [&setting](const MethodInfo& method) {
            return FindParameter(method, setting.name) != nullptr;
        });
        const bool isProperty = owner.type && FindProperty(host, *owner.type, setting.name);
        (isProperty && !isArgument ? properties : arguments).push_back(setting);
    }
}

/// What goes to the output file after the call: the picture that comes back, or else the one that was changed.
enum class Outcome { Picture, ChangedPicture, Print };

Outcome OutcomeOf(const MethodInfo& method, const std::vector<PlannedSetting>& arguments, bool hasOutput,
                  const std::string& callee) {
    const bool takesPicture =
        std::any_of(arguments.begin(), arguments.end(), [](const PlannedSetting& argument) { return argument.File(); });
    if (method.resultType && SameName(*method.resultType, "Picture")) {
        if (!hasOutput) throw UsageError(callee + " gives a picture; name the file to write it to");
        return Outcome::Picture;
    }
    if (!method.resultType && takesPicture) {
        if (!hasOutput)
            throw UsageError(callee + " changes the picture that it is given; name the file to write it to");
        return Outcome::ChangedPicture;
    }
    if (hasOutput) throw UsageError(callee + " gives no picture, so there is nothing to write to a file");
    return Outcome::Print;
}

struct PlannedCall {
    Owner owner;
    MethodInfo method;
    std::string callee;  ///< for messages
    std::vector<PlannedSetting> arguments;
    std::vector<PlannedSetting> properties;
    Outcome outcome;

    /// Arguments and properties.
    std::vector<PlannedSetting> Settings() const {
        std::vector<PlannedSetting> all = arguments;
        all.insert(all.end(), properties.begin(), properties.end());
        return all;
    }
};

PlannedCall Plan(Session& session, const CallCommand& command) {
    PlannedCall call{FindOwner(session.host, command.owner), {}, {}, {}, {}, {}};
    const host::ClassInfo* type = call.owner.type;
    const std::vector<MethodInfo> overloads = FindOverloads(session.host, call.owner, command.method);
    call.callee = call.owner.Name() + "." + overloads.front().name;

    RefuseTwice(command.arguments);
    std::vector<Setting> arguments, properties;
    Divide(command.arguments, call.owner, session.host, overloads, arguments, properties);
    call.method = Choose(overloads, arguments, call.callee);
    if (type) call.properties = PlanProperties(session, *type, properties);
    const auto constants = type ? ConstantsOf(session.host, *type) : call.owner.module->constants;
    for (const Setting& argument : arguments) {
        const ParameterInfo& parameter = *FindParameter(call.method, argument.name);
        call.arguments.push_back({argument, parameter.name,
                                  ParseValue(session.host, argument, parameter.type, constants,
                                             call.callee + "'s argument " + parameter.name)});
    }
    call.outcome = OutcomeOf(call.method, call.arguments, command.output.has_value(), call.callee);
    return call;
}

void CheckFiles(const std::vector<PlannedSetting>& settings, const std::optional<std::filesystem::path>& output) {
    for (const PlannedSetting& setting : settings) {
        if (!setting.File()) continue;
        if (output) RefuseSameFile(*setting.File(), *output);
        CheckImageFile(*setting.File());
    }
}

/// Makes the call. The pictures that are read for it are added to `pictures`, those of arguments first.
host::Value Run(Session& session, const PlannedCall& call, std::vector<GivenPicture>& pictures) {
    std::vector<host::Argument> values;
    for (const PlannedSetting& argument : call.arguments) {
        values.push_back(host::Named(argument.name, ValueOf(session, argument, pictures)));
    }
    const host::Picture source = pictures.empty() ? host::Picture() : pictures.front().read.picture;
    const host::ClassInfo* type = call.owner.type;
    if (!type) return session.host.CallModule(call.owner.module->name, call.method.name, values);

    const host::Object object = MakeObject(session, *type, call.properties, pictures);
    const host::Value result = object.Call(call.method.name, values);
    // Arguments beside the picture stand in for the properties, which the method then does not look at.
    const bool byProperties = call.method.parameters.size() <= 1;
    CheckErrorCode(session, {*type, object, source, call.Settings(), pictures, byProperties});
    return result;
}

}  // namespace

void Call(Session& session, const CallCommand& command) {
    const PlannedCall call = Plan(session, command);
    CheckFiles(call.Settings(), command.output);
    std::optional<ResultFile> output;
    if (command.output) output.emplace(session, *command.output, session.options.force);

    std::vector<GivenPicture> pictures;
    const host::Value result = Run(session, call, pictures);

    const ImageOrigin origin = pictures.empty() ? ImageOrigin{} : pictures.front().read.origin;
    if (call.outcome == Outcome::ChangedPicture) {
        output->Write(session, pictures.front().read.picture, origin);
    } else if (call.outcome == Outcome::Picture) {
        const host::Picture picture(result.AsObject());
        if (!picture) throw WorkError(call.callee + " gave no picture and no reason");
        output->Write(session, picture, origin);
    } else if (call.method.resultType) {
        std::cout << Shown(result) << '\n';
    }
}

}  // namespace ombrix::cli
