// ombrix apply: a chain of effects from one image file to another.

#include <climits>
#include <optional>

#include "cli/commands/command.h"
#include "cli/failure.h"
#include "cli/images/chain.h"
#include "cli/images/picture_work.h"
#include "cli/images/result_file.h"
#include "cli/reflection.h"
#include "cli/settings.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr const char* kHelp = R"(Applies one effect, or a chain of effects, to a picture.

Examples:
  ombrix apply sepia SepiaValue=30 photo.jpg old.jpg
  ombrix apply blend FillPicture=logo.png BlendMode=MODE_OVERLAY Location=-20,40 photo.jpg out.png
  ombrix apply invert --mask spot.png --then sepia SepiaValue=20 photo.png out.webp --quality 80
  ombrix apply sepia SepiaValue=30 --in-place photo.jpg

EFFECT is a class in any case, with or without its ending "Effect". NAME=VALUE sets one of its properties, which
"ombrix list EFFECT" shows. A value is a number, the name of a constant, true or false, x,y for a point, or an image
file; an empty value removes an object. Write ./a=b.png for a file whose name looks like NAME=VALUE.)";

constexpr const char* kUsage = R"(  ombrix apply EFFECT [NAME=VALUE ...] [--mask FILE] [--then EFFECT ...] INPUT OUTPUT
  ombrix apply EFFECT [NAME=VALUE ...] [--mask FILE] [--then EFFECT ...] --in-place FILE)";

const Command::About kAbout = {"apply", "Apply one effect, or a chain of effects, to a picture", {kHelp, kUsage}};

/// An effect of the chain, as typed.
struct Step {
    std::string effect;
    std::vector<Setting> settings;
    std::string mask;  ///< image file; empty for none
};

/// --mask sets a property like any other.
std::vector<Setting> AllSettings(const host::Host& host, const host::ClassInfo& type, const Step& step) {
    constexpr const char* kMask = "Mask";
    std::vector<Setting> settings = step.settings;
    if (step.mask.empty()) return settings;
    if (!host.FindProperty(type.name, kMask)) {
        throw UsageError(type.name + " has no mask, so --mask means nothing for it; it has " +
                         text::Listed(SettableProperties(host, type)));
    }
    settings.push_back({kMask, step.mask});
    return settings;
}

PlannedStep Plan(Session& session, const Step& step, bool inPlace) {
    const host::ClassInfo& type = FindEffect(session.host, step.effect);
    if (inPlace && !session.host.IsA(type.name, host::kInPlaceInterface)) {
        throw UsageError(type.name + " cannot work in place; leave out --in-place and name an output file");
    }
    return {type, PlanProperties(session, type, AllSettings(session.host, type, step))};
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

class Apply : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override {
        app.add_option("words", words_)->group("");
        app.add_option("--mask", mask_, "Mask image: the whole effect where it is black, none where it is white")
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

    void Then() override {
        AddStep();
        if (files_.empty()) return;
        throw UsageError("the files " + text::Listed(files_) + " stand before --then; they go at the end");
    }

    void Check() override {
        AddStep();
        if (files_.size() == (inPlace_ ? 1 : 2)) return;
        throw UsageError(
            std::string(inPlace_ ? "--in-place takes one file, which is changed" : "apply takes INPUT and OUTPUT") +
            ", and was given " + (files_.empty() ? "no file" : text::Listed(files_) + " after the effect's name"));
    }

    void Run(Session& session) override {
        const std::filesystem::path input = files_.front(), output = files_.back();
        // Finds every mistake in the command line and the files before any work is done.
        std::vector<PlannedStep> steps;
        for (const Step& step : steps_) steps.push_back(Plan(session, step, inPlace_));
        CheckFiles(input, inPlace_ ? nullptr : &output, steps);
        ResultFile result(output, MayReplace(session.options), session.options.quality);
        WorkOnPictures(session, {&result.File()}, [&](Session& worker) { Work(worker, steps, result); });
        result.File().Commit();
    }

  private:
    Replace MayReplace(const Options& options) const {
        if (options.force) return Replace::Anything;
        return inPlace_ ? Replace::Writable : Replace::Nothing;
    }

    void Work(Session& session, const std::vector<PlannedStep>& steps, ResultFile& result) const {
        const std::filesystem::path input = files_.front(), output = files_.back();
        Losses losses(session.console, inPlace_ && !session.options.force);
        const OpenedImage source = OpenImage(session, input, {page_, HoldsPages(result.Format().writer)}, losses);
        losses.Check(input);
        Chain chain(session, source);
        for (const PlannedStep& step : steps) chain.Add(step);
        session.console.BeginStage(steps.front().type.name +
                                   (steps.size() > 1 ? " and " + std::to_string(steps.size() - 1) + " more" : ""));
        try {
            result.Write(session, chain.Image(), source.origin, [&chain] { chain.CheckTheRest(); });
        } catch (const vips::VError&) {
            chain.Rethrow();
            throw WorkError(output.string() + " cannot be written: " + TakeLibraryMessage());
        }
    }

    void AddStep() {
        if (words_.empty() || LooksLikeSetting(words_.front())) {
            throw UsageError(
                "apply begins with the name of an effect, as in: ombrix apply invert photo.jpg negative.jpg");
        }
        Step step{words_.front(), {}, std::exchange(mask_, {})};
        SortWords({words_.begin() + 1, words_.end()}, step.settings, files_);
        steps_.push_back(std::move(step));
        words_.clear();
    }

    // Since the last --then.
    std::vector<std::string> words_;
    std::string mask_;

    bool inPlace_ = false;
    std::optional<int> page_;  ///< from 1
    std::vector<Step> steps_;
    std::vector<std::string> files_;  ///< input and output; one when in place
};

}  // namespace

std::unique_ptr<Command> MakeApply() { return std::make_unique<Apply>(); }

}  // namespace ombrix::cli
