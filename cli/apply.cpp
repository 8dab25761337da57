// ombrix apply: a chain of effects from one image file to another.

#include "cli/effect_object.h"
#include "cli/failure.h"
#include "cli/image_reader.h"
#include "cli/outcome.h"
#include "cli/reflection.h"
#include "cli/result_file.h"
#include "cli/session.h"
#include "cli/text.h"

namespace ombrix::cli {

namespace {

struct PlannedStep {
    const host::ClassInfo& type;
    std::vector<PlannedSetting> properties;
};

/// Settings of the step with the mask among them: --mask sets a property like any other.
std::vector<Setting> AllSettings(const host::Host& host, const host::ClassInfo& type, const Step& step) {
    constexpr const char* kMask = "Mask";
    std::vector<Setting> settings = step.settings;
    if (!step.mask) return settings;
    if (!FindProperty(host, type, kMask)) {
        throw UsageError(type.name + " has no mask, so --mask means nothing for it; it has " +
                         Listed(SettableProperties(host, type)));
    }
    settings.push_back({kMask, *step.mask});
    return settings;
}

PlannedStep Plan(Session& session, const Step& step, bool inPlace) {
    const host::ClassInfo& type = FindEffect(session.host, step.effect);
    if (inPlace && !Implements(session.host, type, kInPlaceInterface)) {
        throw UsageError(type.name + " cannot work in place; leave out --in-place and name an output file");
    }
    return {type, PlanProperties(session, type, AllSettings(session.host, type, step))};
}

void CheckFiles(const ApplyCommand& command, const std::vector<PlannedStep>& steps) {
    std::vector<std::filesystem::path> files{command.input};
    for (const PlannedStep& step : steps) {
        for (const PlannedSetting& property : step.properties) {
            if (property.File()) files.push_back(*property.File());
        }
    }
    for (const std::filesystem::path& file : files) {
        if (!command.inPlace) RefuseSameFile(file, command.output);
    }
    for (const std::filesystem::path& file : files) CheckImageFile(file);
}

/// The picture with the effect on it: a new one, or the same one changed.
host::Picture Applied(Session& session, const PlannedStep& step, const host::Picture& source, bool inPlace) {
    std::vector<GivenPicture> pictures;
    const host::Object effect = MakeObject(session, step.type, step.properties, pictures);
    host::Picture result = source;
    if (inPlace) {
        effect.CallInterface(kInPlaceInterface, "ApplyInPlace", {host::Object(source)});
    } else {
        result = host::Picture(effect.CallInterface(kEffectInterface, "Apply", {host::Object(source)}).AsObject());
    }
    CheckErrorCode(session, {step.type, effect, source, step.properties, pictures});
    if (!result) throw WorkError(step.type.name + " gave no picture and no reason");
    return result;
}

}  // namespace

void Apply(Session& session, const ApplyCommand& command) {
    // Whatever can be wrong with the command line, the files and the output is found out before any work is done.
    std::vector<PlannedStep> steps;
    for (const Step& step : command.steps) steps.push_back(Plan(session, step, command.inPlace));
    CheckFiles(command, steps);
    ResultFile output(session, command.output, command.inPlace || session.options.force);

    auto [picture, origin] = ReadImage(session.host, command.input, session.options.maxPixels, session.console);
    // Each result takes the place of the picture before it, which is released at that moment.
    for (const PlannedStep& step : steps) picture = Applied(session, step, Usable(session, picture), command.inPlace);
    output.Write(session, picture, origin);
}

}  // namespace ombrix::cli
