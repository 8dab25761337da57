// ombrix call: one method of a class or a module.

#include <algorithm>
#include <iostream>
#include <optional>
#include <set>

#include "catalogue/arguments.h"
#include "catalogue/constants.h"
#include "cli/commands/command.h"
#include "cli/effect_object.h"
#include "cli/failure.h"
#include "cli/images/image_reader.h"
#include "cli/images/picture_work.h"
#include "cli/images/result_file.h"
#include "cli/images/source_losses.h"
#include "cli/outcome.h"
#include "cli/reflection.h"
#include "cli/settings.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/value_check.h"
#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

using host::MethodInfo;
using host::ParameterInfo;

constexpr const char* kHelp = R"(Calls one method of a class or a module, with its arguments by name.

Examples:
  ombrix call ColorFilterEffect.Apply source=photo.jpg red=40 green=0 blue=-30 warm.png
  ombrix call ColorFilterEffect.ApplyInPlace source=photo.jpg red=40 green=0 blue=-30 warm.png
  ombrix call OmbrixUtilities.EnsurePictureBits src=photo.png depth=24 small.tif

OUTPUT gets the picture that the method returns or, when it returns nothing, the one that it changes. Any other result
is printed. Names that are not arguments of the method but properties of its class are set before the call.)";

constexpr const char* kUsage = R"(  ombrix call CLASS.METHOD [NAME=VALUE ...] [OUTPUT]
  ombrix call MODULE.METHOD [NAME=VALUE ...] [OUTPUT])";

const Command::About kAbout = {"call", "Call a method of a class or a module", {kHelp, kUsage}};

/// As typed.
struct GivenCall {
    std::string owner;  ///< class or module
    std::string method;
    std::vector<Setting> settings;  ///< arguments, and properties of the class
    std::optional<OutputName> output;
};

UsageError NoMethod(const host::Host& host, const Owner& owner, const std::string& name) {
    std::set<std::string> names;
    const auto add = [&names](const auto& declaring) {
        for (const MethodInfo& method : declaring.methods) names.insert(method.name);
    };
    if (owner.module) add(*owner.module);
    if (owner.type) {
        for (const host::ClassInfo* ancestor : host.Ancestry(owner.type->name)) add(*ancestor);
    }
    return UsageError(owner.Name() + " has no method " + text::Quoted(name) +
                      (names.empty() ? "; it has none" : "; it has " + text::Listed({names.begin(), names.end()})));
}

const ParameterInfo* FindParameter(const MethodInfo& method, const std::string& name) {
    for (const ParameterInfo& parameter : method.parameters) {
        if (text::SameName(parameter.name, name)) return &parameter;
    }
    return nullptr;
}

UsageError NoneTakes(const std::vector<Setting>& arguments, const std::vector<MethodInfo>& overloads,
                     const std::string& callee) {
    const MethodInfo& first = overloads.front();
    const auto isTaken = [&first](const Setting& argument) { return FindParameter(first, argument.name) != nullptr; };
    if (overloads.size() == 1 && std::ranges::all_of(arguments, isTaken)) {
        std::vector<std::string> missing;
        for (const ParameterInfo& parameter : first.parameters) {
            const auto isThis = [&](const Setting& given) { return text::SameName(given.name, parameter.name); };
            if (parameter.required && std::ranges::none_of(arguments, isThis)) missing.push_back(parameter.name);
        }
        return UsageError(callee + " also needs " + text::Listed(missing) + ": it is " + first.declaration);
    }
    std::vector<std::string> declarations;
    for (const MethodInfo& method : overloads) declarations.push_back(method.declaration);
    return UsageError(callee + " cannot be called with these arguments; there is " + text::Join(declarations, " and "));
}

/// The overload that takes arguments of these names.
MethodInfo Choose(const host::Host& host, const std::vector<Setting>& arguments,
                  const std::vector<MethodInfo>& overloads, const Owner& owner, const std::string& callee) {
    std::vector<std::string> names;
    for (const Setting& argument : arguments) names.push_back(argument.name);
    try {
        if (auto method = host.ChooseMethod(owner.Name(), overloads.front().name, names)) return *method;
    } catch (const host::Error& ambiguous) {
        throw UsageError(ambiguous.what());
    }
    throw NoneTakes(arguments, overloads, callee);
}

/// Sorts the settings into arguments, of any overload, and properties.
void Divide(const std::vector<Setting>& settings, const Owner& owner, const host::Host& host,
            const std::vector<MethodInfo>& overloads, std::vector<Setting>& arguments,
            std::vector<Setting>& properties) {
    for (const Setting& setting : settings) {
        const auto takes = [&](const MethodInfo& method) { return FindParameter(method, setting.name) != nullptr; };
        const bool isArgument = std::ranges::any_of(overloads, takes);
        const bool isProperty = owner.type && host.FindProperty(owner.type->name, setting.name);
        (isProperty && !isArgument ? properties : arguments).push_back(setting);
    }
}

/// What comes of the call: a picture for the output file, the argument changed, or text.
enum class Outcome { Picture, ChangedPicture, Print };

Outcome OutcomeOf(const MethodInfo& method, const std::vector<PlannedSetting>& arguments, bool hasOutput,
                  const std::string& callee) {
    const bool takesPicture =
        std::any_of(arguments.begin(), arguments.end(), [](const PlannedSetting& argument) { return argument.File(); });
    if (method.resultType && text::SameName(*method.resultType, "Picture")) {
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

    std::vector<PlannedSetting> Settings() const {
        std::vector<PlannedSetting> all = arguments;
        all.insert(all.end(), properties.begin(), properties.end());
        return all;
    }
};

/// Those of the property that the argument stands for, or else all of its owner.
std::vector<catalogue::Constant> ConstantsForArgument(const Session& session, const Owner& owner,
                                                      const MethodInfo& method, const ParameterInfo& parameter) {
    if (!owner.type) return catalogue::WithWords(owner.module->constants);
    const host::PropertyInfo* property = catalogue::PropertyOf(session.host, *owner.type, method, parameter);
    return property ? session.catalogue.ConstantsFor(*owner.type, *property) : ConstantsOf(session.host, *owner.type);
}

PlannedCall Plan(Session& session, const GivenCall& given) {
    PlannedCall call{FindOwner(session.host, given.owner), {}, {}, {}, {}, {}};
    const host::ClassInfo* type = call.owner.type;
    const std::vector<MethodInfo> overloads = session.host.FindMethods(call.owner.Name(), given.method);
    if (overloads.empty()) throw NoMethod(session.host, call.owner, given.method);
    call.callee = call.owner.Name() + "." + overloads.front().name;

    RefuseTwice(given.settings);
    std::vector<Setting> arguments, properties;
    Divide(given.settings, call.owner, session.host, overloads, arguments, properties);
    call.method = Choose(session.host, arguments, overloads, call.owner, call.callee);
    if (type) call.properties = PlanProperties(session, *type, properties);
    for (const Setting& argument : arguments) {
        const ParameterInfo& parameter = *FindParameter(call.method, argument.name);
        call.arguments.push_back({argument, parameter.name,
                                  ParseValue(session.host, argument, parameter.type,
                                             ConstantsForArgument(session, call.owner, call.method, parameter),
                                             call.callee + "'s argument " + parameter.name)});
    }
    call.outcome = OutcomeOf(call.method, call.arguments, given.output.has_value(), call.callee);
    return call;
}

void CheckFiles(const std::vector<PlannedSetting>& settings, const std::optional<OutputName>& output) {
    for (const PlannedSetting& setting : settings) {
        if (!setting.File()) continue;
        if (output) RefuseSameFile(*setting.File(), output->file);
        CheckImageFile(*setting.File());
    }
}

/// A UsageError when a module's method gives no picture for a number, even of small pictures, and would for another.
void RefuseNumbers(Session& session, const PlannedCall& call) {
    if (!call.owner.module || call.outcome != Outcome::Picture) return;
    const auto gives = [&](const std::string& changed, std::int64_t number) {
        std::vector<host::Argument> values;
        for (const PlannedSetting& argument : call.arguments) {
            const auto* value = std::get_if<host::Value>(&argument.value);
            const host::Value given = value ? *value : host::Value(host::Object(session.host.NewPicture(1, 1)));
            values.push_back(host::Named(argument.name, argument.name == changed ? host::Value(number) : given));
        }
        return !session.host.CallModule(call.owner.module->name, call.method, values).IsNil();
    };
    constexpr std::int64_t kMostTried = 64;
    if (gives("", 0)) return;
    for (const PlannedSetting& argument : call.arguments) {
        const auto* value = std::get_if<host::Value>(&argument.value);
        if (!value || !value->IsInteger()) continue;
        std::vector<std::string> taken;
        for (std::int64_t number = 0; number <= kMostTried; ++number) {
            if (gives(argument.name, number)) taken.push_back(std::to_string(number));
        }
        if (taken.empty()) continue;
        throw UsageError(call.callee + " gives no picture for " + argument.given.AsGiven() + "; of 0 to " +
                         std::to_string(kMostTried) + " it takes " + text::Listed(taken));
    }
}

/// Checks the values of an effect's call as those of properties, where its arguments stand for such.
void CheckArguments(Session& session, const PlannedCall& call) {
    const host::ClassInfo* type = call.owner.type;
    const bool isApply = text::SameName(call.method.name, "Apply") || text::SameName(call.method.name, "ApplyInPlace");
    if (!type || !isApply || !session.host.IsA(type->name, host::kEffectInterface)) return;
    std::vector<PlannedSetting> settings = call.properties;
    for (const PlannedSetting& argument : call.arguments) {
        const auto* property =
            catalogue::PropertyOf(session.host, *type, call.method, *FindParameter(call.method, argument.name));
        const bool isSource = text::SameName(argument.name, call.method.parameters.front().name);
        if (!property && !isSource) return;
        if (property) settings.push_back({argument.given, property->name, argument.value});
    }
    CheckValues(session, *type, settings);
}

void CheckNumbers(Session& session, const PlannedCall& call) {
    CheckArguments(session, call);
    RefuseNumbers(session, call);
}

/// Adds the pictures that are read to `pictures`, those of arguments first.
host::Value Make(Session& session, const PlannedCall& call, std::vector<GivenPicture>& pictures) {
    std::vector<host::Argument> values;
    for (const PlannedSetting& argument : call.arguments) {
        values.push_back(host::Named(argument.name, ValueOf(session, argument, pictures)));
    }
    const host::Picture source = pictures.empty() ? host::Picture() : pictures.front().read.picture;
    const host::ClassInfo* type = call.owner.type;
    const Doing working(Activity::Effect, call.callee);
    if (!type) return session.host.CallModule(call.owner.module->name, call.method, values);

    const host::Object object = MakeObject(session, *type, call.properties, pictures);
    const host::Value result = object.Call(call.method, values);
    // A method with more arguments than the picture does not look at the properties.
    const bool byProperties = call.method.parameters.size() <= 1;
    CheckErrorCode(session, {*type, object, source, call.Settings(), pictures, byProperties});
    return result;
}

/// Every method, as it is called.
Candidates Callees(const host::Host& host) {
    Candidates callees;
    const auto add = [&callees](const auto& owner, const auto& declaring) {
        for (const MethodInfo& method : declaring.methods) {
            callees.words.push_back({owner.name + "." + method.name, method.declaration});
        }
    };
    for (const host::ClassInfo& type : host.Classes()) {
        if (type.plugin.empty()) continue;
        for (const host::ClassInfo* ancestor : host.Ancestry(type.name)) add(type, *ancestor);
    }
    for (const host::ModuleInfo& module : host.Modules()) add(module, module);
    return callees;
}

/// Names of the arguments, for all overloads, and the output file.
Candidates Arguments(const host::Host& host, const std::string& callee) {
    Candidates names{{}, true};
    const std::size_t dot = callee.find('.');
    if (dot == std::string::npos) return names;
    try {
        for (const MethodInfo& method :
             host.FindMethods(FindOwner(host, callee.substr(0, dot)).Name(), callee.substr(dot + 1))) {
            for (const ParameterInfo& parameter : method.parameters) {
                names.words.push_back({parameter.name + "=", parameter.type});
            }
        }
    } catch (const UsageError&) {  // there is no such owner
    }
    return names;
}

class Call : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override { app.add_option("words", words_)->group(""); }

    Candidates Words(const host::Host& host, const catalogue::Catalogue&,
                     const std::vector<std::string>& given) const override {
        return given.empty() ? Callees(host) : Arguments(host, given.front());
    }

    void Check() override {
        const std::size_t dot = words_.empty() ? std::string::npos : words_.front().find('.');
        if (dot == std::string::npos || dot == 0 || dot + 1 == words_.front().size()) {
            throw UsageError(
                "call begins with CLASS.METHOD or MODULE.METHOD, as in: "
                "ombrix call ColorFilterEffect.Apply source=photo.jpg red=40 green=0 blue=0 warm.png");
        }
        given_.owner = words_.front().substr(0, dot);
        given_.method = words_.front().substr(dot + 1);
        std::vector<std::string> files;
        SortWords({words_.begin() + 1, words_.end()}, given_.settings, files);
        if (files.size() > 1) {
            throw UsageError("call takes one OUTPUT, and was given " + text::Listed(files) +
                             "; arguments are given by name, as in source=" + files.front());
        }
        if (files.empty()) return;
        RefuseEmpty(files.front(), "OUTPUT");
        given_.output = ParseOutputName(files.front());
    }

    void Run(Session& session) override {
        const PlannedCall call = Plan(session, given_);
        std::optional<ResultFile> output;
        const auto openFiles = [&] {
            CheckFiles(call.Settings(), given_.output);
            if (!given_.output) return;
            output.emplace(*given_.output, session.options.force ? Replace::Anything : Replace::Nothing,
                           session.options);
        };
        AfterValues(
            session, [&](Session& worker) { CheckNumbers(worker, call); }, openFiles);

        std::vector<const OutputFile*> written;
        if (output) written.push_back(&output->File());
        WorkOnPictures(session, written, [&](Session& worker) { Work(worker, call, output); });
        if (output) output->File().Commit();
    }

  private:
    static void Prepare(const Session& session, const PlannedCall& call, ResultFile& output) {
        output.CheckOptions();
        if (!session.options.keepQuality) return;
        const std::vector<PlannedSetting> settings = call.Settings();
        const auto source =
            std::ranges::find_if(settings, [](const auto& setting) { return setting.File() != nullptr; });
        if (source == settings.end()) throw UsageError("--quality keep is for calls that read a picture");
        output.KeepQualityOf(*source->File(), session.console);
    }

    static void Work(Session& session, const PlannedCall& call, std::optional<ResultFile>& output) {
        if (output) Prepare(session, call, *output);
        CheckNumbers(session, call);
        std::vector<GivenPicture> pictures;
        const host::Value result = Make(session, call, pictures);

        const ImageOrigin origin = pictures.empty() ? ImageOrigin{} : pictures.front().read.origin;
        if (output && !pictures.empty()) {
            Losses losses(session.console, false);
            TellLosses(*pictures.front().setting.File(), origin, *output, losses);
        }
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

    std::vector<std::string> words_;
    GivenCall given_;
};

}  // namespace

std::unique_ptr<Command> MakeCall() { return std::make_unique<Call>(); }

}  // namespace ombrix::cli
