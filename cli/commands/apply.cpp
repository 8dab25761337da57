// ombrix apply: a chain of effects from one image file to another.

#include <algorithm>
#include <climits>
#include <optional>

#include "catalogue/arguments.h"
#include "catalogue/constants.h"
#include "cli/commands/command.h"
#include "cli/failure.h"
#include "cli/images/chain.h"
#include "cli/images/picture_work.h"
#include "cli/images/result_file.h"
#include "cli/images/source_losses.h"
#include "cli/images/standard_input.h"
#include "cli/property_text.h"
#include "cli/reflection.h"
#include "cli/settings.h"
#include "cli/value_check.h"
#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr const char* kHelp = R"(Applies one effect, or a chain of effects, to a picture.

Examples:
  ombrix apply sepia 30 photo.jpg old.jpg
  ombrix apply blend overlay logo.png Location=-20,40 photo.jpg out.png
  ombrix apply invert --mask spot.png --then sepia 20 photo.png out.webp --quality 80
  ombrix apply sepia 30 photo.jpg old.tif[compression=deflate]
  ombrix apply sepia SepiaValue=30 --in-place photo.jpg

EFFECT is a class in any case, with or without its ending "Effect"; "apply" itself may be left out. NAME=VALUE sets one
of its properties, which "ombrix list EFFECT" shows: SepiaValue, or without the effect's own name value. A VALUE alone
sets the next of those that "ombrix EFFECT --help" shows in its usage. A value is a number, 60%, the name of a constant,
true or false, x,y for a point, or an image file; NAME= removes an object. The last two words are INPUT and OUTPUT.
Write ./a=b.png for a file whose name looks like NAME=VALUE.

OUTPUT may end with options of its writer, by the names that libvips uses: out.webp[lossless],
out.jpg[Q=85,subsample-mode=off,interlace], out.png[compression=9], out.avif[lossless]. "-" is standard input or output.)";

constexpr const char* kUsage =
    R"(  ombrix apply EFFECT [VALUE ...] [NAME=VALUE ...] [--mask FILE] [--then EFFECT ...] INPUT OUTPUT
  ombrix apply EFFECT [VALUE ...] [NAME=VALUE ...] [--mask FILE] [--then EFFECT ...] --in-place FILE)";

const Command::About kAbout = {"apply", "Apply one effect, or a chain of effects, to a picture", {kHelp, kUsage}};

/// Too many or too few words, which the usage explains.
class WrongWords : public UsageError {
  public:
    using UsageError::UsageError;
};

/// An effect of the chain, as typed.
struct Step {
    std::string effect;
    std::vector<std::string> values;  ///< without names
    std::vector<Setting> settings;
    std::string mask;  ///< image file; empty for none
};

std::vector<std::string> NamesOf(const std::vector<const catalogue::Property*>& properties) {
    std::vector<std::string> names;
    for (const catalogue::Property* property : properties) names.push_back(property->name);
    return names;
}

/// The settings with properties as registered where their words are given.
std::vector<Setting> WithNames(const catalogue::Effect& effect, std::vector<Setting> settings) {
    for (Setting& setting : settings) {
        const catalogue::Property* property = effect.FindProperty(setting.name);
        if (property && !text::SameName(property->name, setting.name)) setting.name = property->name;
    }
    return settings;
}

/// Names the values: each is for the next property that was not given by name.
std::vector<Setting> NamedValues(const catalogue::Effect& effect, const std::vector<Setting>& settings,
                                 const std::vector<std::string>& values) {
    std::vector<Setting> named;
    const std::vector<const catalogue::Property*>& positions = effect.ByPosition();
    for (const catalogue::Property* property : positions) {
        if (named.size() == values.size()) break;
        const auto isThis = [property](const Setting& each) { return text::SameName(each.name, property->name); };
        if (std::ranges::none_of(settings, isThis)) named.push_back({property->name, values[named.size()]});
    }
    if (named.size() == values.size()) return named;
    const std::vector<std::string> extra(values.begin() + static_cast<std::ptrdiff_t>(named.size()), values.end());
    const std::string taken = positions.empty()       ? "no values"
                              : positions.size() == 1 ? "one value, " + positions.front()->name
                                                      : "the values " + text::Listed(NamesOf(positions));
    throw WrongWords(effect.Name() + " takes " + taken + ", and was given " + text::Listed(extra) +
                     (named.empty() ? "" : " beyond " + std::string(named.size() == 1 ? "it" : "them")) +
                     "; the files go at the end of the line: INPUT and OUTPUT, or one with --in-place");
}

/// Values without names, then those with names. --mask sets a property like any other.
std::vector<Setting> AllSettings(const host::Host& host, const catalogue::Effect& effect, const Step& step) {
    const std::vector<Setting> given = WithNames(effect, step.settings);
    std::vector<Setting> settings = NamedValues(effect, given, step.values);
    settings.insert(settings.end(), given.begin(), given.end());
    if (step.mask.empty()) return settings;
    const catalogue::Property* mask = effect.FindProperty(catalogue::kMaskProperty);
    if (!mask) {
        throw UsageError(effect.Name() + " has no mask, so --mask means nothing for it; it has " +
                         text::Listed(SettableProperties(host, effect.Type())));
    }
    settings.push_back({mask->name, step.mask});
    return settings;
}

/// The effect's own properties, those that are given by position first.
std::vector<HelpRow> ValuesOf(const catalogue::Effect& effect) {
    std::vector<const catalogue::Property*> properties = effect.ByPosition();
    for (const catalogue::Property& property : effect.Properties()) {
        if (property.inherited || std::ranges::find(properties, &property) != properties.end()) continue;
        properties.push_back(&property);
    }
    std::vector<HelpRow> rows;
    for (const catalogue::Property* property : properties) {
        rows.emplace_back(property->name, TextOf(effect, *property));
    }
    return rows;
}

/// "ombrix sepia --help"
HelpText HelpOf(const catalogue::Effect& effect) {
    const std::string& name = effect.Word();
    const bool hasMask = effect.FindProperty(catalogue::kMaskProperty);
    std::string usage = "  ombrix " + name;
    for (const catalogue::Property* property : effect.ByPosition()) usage += " [" + property->name + "]";
    usage += std::string(" [NAME=VALUE ...]") + (hasMask ? " [--mask FILE]" : "") + " [--then EFFECT ...]";
    const std::string chain = usage;
    usage += " INPUT OUTPUT";
    if (effect.WorksInPlace()) usage += "\n" + chain + " --in-place FILE";
    return {(effect.Description().empty() ? "Applies " + effect.Name() + " to a picture." : effect.Description()) +
                "\n\n\"ombrix list " + name + "\" shows its methods and constants too.",
            usage, [&effect] { return ValuesOf(effect); }};
}

/// "sepia 30 photo.jpg" lacks OUTPUT, although it has two words at the end. `step`: the last, whose words they are.
void RefuseValueAsInput(Session& session, const Step& step, const std::vector<std::string>& files) {
    const catalogue::Effect& effect = FindEffect(session, step.effect);
    const std::vector<const catalogue::Property*>& positions = effect.ByPosition();
    if (!step.values.empty() || positions.empty() || std::filesystem::exists(files.front())) return;
    const catalogue::Property& first = *positions.front();
    try {
        const TypedValue value =
            ParseValue(session.host, {first.name, files.front()}, first.type, effect.ConstantsOf(first), first.name);
        if (!std::holds_alternative<host::Value>(value)) return;
    } catch (const UsageError&) {
        return;
    }
    throw WrongWords("after its values " + effect.Name() + " takes INPUT and OUTPUT, and was given " + files.back() +
                     "; there is no file " + files.front() + ", which would be a " + first.name);
}

PlannedStep Plan(Session& session, const Step& step, bool inPlace) {
    const catalogue::Effect& effect = FindEffect(session, step.effect);
    if (inPlace && !effect.WorksInPlace()) {
        throw UsageError(effect.Name() + " cannot work in place; leave out --in-place and name an output file");
    }
    return {effect.Type(), PlanProperties(session, effect.Type(), AllSettings(session.host, effect, step))};
}

/// All files that are read must exist and differ from the output.
void CheckFiles(const std::filesystem::path& input, const std::filesystem::path* output,
                const std::vector<PlannedStep>& steps) {
    std::vector<std::filesystem::path> files{input};
    for (const PlannedStep& step : steps) {
        for (const PlannedSetting& property : step.properties) {
            if (property.File()) files.push_back(*property.File());
        }
    }
    for (const std::filesystem::path& file : files) {
        if (output) RefuseSameFile(file, *output);
    }
    for (const std::filesystem::path& file : files) CheckImageFile(file);
}

void CheckSteps(Session& session, const std::vector<PlannedStep>& steps) {
    for (const PlannedStep& step : steps) CheckValues(session, step.type, step.properties);
}

class Apply : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override {
        app.add_option("words", words_)->group("");
        app.add_option_function<std::string>(
               "--mask",
               [this](const std::string& file) {
                   RefuseEmpty(file, "the mask");
                   mask_ = file;
               },
               "Mask image: the whole effect where it is black, none where it is white")
            ->type_name("FILE");
        app.add_flag("--then")->description("Ends one effect and begins the next of a chain");
        app.add_flag("--in-place", inPlace_, "Change the file INPUT itself");
        app.add_option_function<std::string>(
               "--page",
               [this](const std::string& word) { page_ = static_cast<int>(ParseCount("--page", word, 1, INT_MAX)); },
               "Take this page or frame alone, from 1; without it all, where OUTPUT can hold them")
            ->type_name("N")
            ->take_last();
    }

    std::vector<Form> AddForms(CLI::App& program, const catalogue::Catalogue& catalogue) override {
        std::vector<Form> forms;
        for (const catalogue::Effect& effect : catalogue.Effects()) {
            const std::string& name = effect.Word();
            // A command's own name stays its own; such an effect is for "apply".
            if (!program.get_subcommands([&name](const CLI::App* app) { return app->check_name(name); }).empty())
                continue;
            const std::string& description = effect.Description();
            CLI::App* app = program.add_subcommand(name, description.empty() ? "Apply " + effect.Name() : description);
            app->ignore_case()->group("Effects");
            if (const std::string whole = text::LowerCase(effect.Name()); whole != name) app->alias(whole);
            AddOptions(*app);
            // Not shown where they mean nothing, which a sentence tells whoever gives them.
            if (!effect.FindProperty(catalogue::kMaskProperty)) app->get_option("--mask")->group("");
            if (!effect.WorksInPlace()) app->get_option("--in-place")->group("");
            app->callback([this, name] {
                words_.insert(words_.begin(), name);
                called_ = name;
            });
            forms.push_back({app, [&effect] { return HelpOf(effect); }});
        }
        return forms;
    }

    void Then() override {
        AddStep();
        steps_.back().values = std::exchange(others_, {});
    }

    void Check() override {
        AddStep();
        const std::size_t count = inPlace_ ? 1 : 2;
        if (others_.size() < count) {
            throw UsageError(std::string(inPlace_ ? "--in-place takes one file, which is changed"
                                                  : called_ + " takes INPUT and OUTPUT") +
                             ", and was given " + (others_.empty() ? "no file" : text::Listed(others_)) +
                             MistakenWords());
        }
        const auto firstFile = others_.end() - static_cast<std::ptrdiff_t>(count);
        steps_.back().values.assign(others_.begin(), firstFile);
        files_.assign(firstFile, others_.end());
        RefuseEmpty(files_.front(), "INPUT");
        RefuseEmpty(files_.back(), "OUTPUT");
        if (inPlace_ && files_.back() == "-")
            throw UsageError("--in-place changes a file, which standard input is not");
    }

    void Run(Session& session) override {
        const OutputName output = inPlace_ ? OutputName{files_.back(), {}} : ParseOutputName(files_.back());
        // Finds every mistake in the command line and the files before any work is done.
        std::vector<PlannedStep> steps;
        try {
            for (const Step& step : steps_) steps.push_back(Plan(session, step, inPlace_));
            if (!inPlace_) RefuseValueAsInput(session, steps_.back(), files_);
        } catch (const WrongWords& wrong) {
            throw UsageError(wrong.what(), ShownUsage(Help(session)));
        }
        const std::filesystem::path input = InputFile(files_.front());
        std::optional<ResultFile> result;
        AfterValues(
            session, [&](Session& worker) { CheckSteps(worker, steps); },
            [&] {
                CheckFiles(input, inPlace_ ? nullptr : &output.file, steps);
                result.emplace(output, MayReplace(session.options), session.options);
            });
        WorkOnPictures(session, {&result->File()}, [&](Session& worker) { Work(worker, steps, *result); });
        result->File().Commit();
    }

  private:
    Replace MayReplace(const Options& options) const {
        if (options.force) return Replace::Anything;
        return inPlace_ ? Replace::Writable : Replace::Nothing;
    }

    void Work(Session& session, const std::vector<PlannedStep>& steps, ResultFile& result) const {
        result.CheckOptions();
        const std::filesystem::path input = InputFile(files_.front());
        CheckSteps(session, steps);
        Losses losses(session.console, inPlace_ && !session.options.force);
        if (session.options.keepQuality) result.KeepQualityOf(input, session.console);
        if (inPlace_ && !session.options.quality) result.StayLossless(input, losses, session.console);
        const OpenedImage source = OpenImage(session, input, {page_, HoldsPages(result.Format().writer)}, losses);
        TellLosses(input, source.origin, result, losses);
        losses.Check(input);
        Chain chain(session, source);
        for (const PlannedStep& step : steps) chain.Add(step);
        session.console.BeginStage(steps.front().type.name +
                                   (steps.size() > 1 ? " and " + std::to_string(steps.size() - 1) + " more" : ""));
        try {
            result.Write(session, chain.Image(), source.origin, [&chain] { chain.CheckTheRest(); });
        } catch (const vips::VError&) {
            chain.Rethrow();
            throw WorkError(result.File().Target().string() + " cannot be written: " + TakeLibraryMessage());
        }
    }

    /// Of the subcommand that was typed.
    HelpText Help(const Session& session) const {
        return called_ == kAbout.name ? kAbout.help : HelpOf(FindEffect(session, called_));
    }

    /// Where the missing files may be.
    std::string MistakenWords() const {
        for (const Step& step : steps_) {
            if (std::filesystem::is_regular_file(step.effect))
                return "; the file " + step.effect + " stands where the name of an effect belongs";
        }
        std::vector<std::string> values;
        for (const Step& step : steps_) values.insert(values.end(), step.values.begin(), step.values.end());
        return values.empty() ? ""
                              : "; " + text::Listed(values) + " before --then counts as an effect's, not as a file";
    }

    void AddStep() {
        if (words_.empty() || LooksLikeSetting(words_.front())) {
            throw UsageError(
                "apply begins with the name of an effect, as in: ombrix apply invert photo.jpg negative.jpg");
        }
        Step step{words_.front(), {}, {}, std::exchange(mask_, {})};
        SortWords({words_.begin() + 1, words_.end()}, step.settings, others_);
        steps_.push_back(std::move(step));
        words_.clear();
    }

    // Since the last --then.
    std::vector<std::string> words_;
    std::vector<std::string> others_;  ///< that set nothing by name
    std::string mask_;

    bool inPlace_ = false;
    std::optional<int> page_;       ///< from 1
    std::string called_ = "apply";  ///< the subcommand, as it may be typed
    std::vector<Step> steps_;
    std::vector<std::string> files_;  ///< input and output; one when in place
};

}  // namespace

std::unique_ptr<Command> MakeApply() { return std::make_unique<Apply>(); }

}  // namespace ombrix::cli
