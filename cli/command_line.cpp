#include "cli/command_line.h"

#include <algorithm>
#include <utility>

#include "cli/failure.h"
#include "cli/help.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::cli {

namespace {

constexpr const char* kHelp = R"(ombrix applies image effects to image files.

Examples:
  ombrix apply sepia SepiaValue=30 photo.jpg old.jpg
  ombrix apply ColorFilterEffect Red=40 --mask vignette.png photo.jpg warm.png
  ombrix apply contrast ContrastValue=25 --then brightness BrightnessValue=-10 photo.jpg look.jpg
  ombrix call ColorFilterEffect.Apply source=photo.jpg red=40 green=0 blue=-30 warm.png
  ombrix list
  ombrix list ColorFilterEffect
  ombrix gallery photo.jpg --fill texture.jpg -o gallery.html)";

constexpr HelpText kProgramHelp = {kHelp, "  ombrix COMMAND ... [OPTIONS]"};

std::int64_t ParseCores(const std::string& word) {
    if (text::SameName(word, "auto")) return 0;
    if (text::SameName(word, "all")) return -1;
    try {
        return ParseCount("--cores", word, 1, 8);
    } catch (const UsageError&) {
        throw UsageError("--cores takes a number from 1 to 8, auto or all, not " + text::Quoted(word));
    }
}

class Parser {
  public:
    explicit Parser(Options& options) : program_("", "ombrix") {
        program_.formatter(HelpLayout(kProgramHelp));
        program_.set_version_flag("--version", "ombrix " OMBRIX_VERSION, "Show the version");
        program_.set_help_flag("-h,--help", "Show this help");
        program_.require_subcommand(0, 1);
        program_.allow_extras();
        program_.fallthrough();
        AddOptions(options);
        for (std::unique_ptr<Command>& command : MakeCommands()) {
            const Command::About& about = command->Describe();
            CLI::App* app = program_.add_subcommand(about.name, about.summary);
            app->formatter(HelpLayout(about.help));
            command->AddOptions(*app);
            commands_.push_back({std::move(command), app});
        }
    }

    /// False when it has printed help or the version.
    bool Read(std::vector<std::string> words) {
        try {
            std::reverse(words.begin(), words.end());  // the order that CLI11 wants
            program_.parse(std::move(words));
        } catch (const CLI::Success& asked) {
            program_.exit(asked);
            return false;
        } catch (const CLI::ArgumentMismatch& missing) {
            throw UsageError(text::OnOneLine(missing.what()) + "; --help shows how it is used");
        } catch (const CLI::ParseError& wrong) {
            throw UsageError(text::OnOneLine(wrong.what()));
        }
        for (const std::string& extra : program_.remaining(true)) RefuseExtra(extra);
        return true;
    }

    /// A UsageError when no command was given.
    std::unique_ptr<Command>& Given() {
        for (auto& [command, app] : commands_) {
            if (app->parsed()) return command;
        }
        throw UsageError("there is no command; give apply, call, list or gallery (ombrix --help shows examples)");
    }

  private:
    void AddOptions(Options& options) {
        const auto add = [this](const char* name, const char* type, const char* about, auto take) {
            program_.add_option_function<std::string>(name, take, about)->type_name(type)->take_last();
        };
        program_
            .add_option_function<std::vector<std::string>>(
                "--plugin",
                [&options](const std::vector<std::string>& files) {
                    options.plugins.insert(options.plugins.end(), files.begin(), files.end());
                },
                "A further plug-in to load after the standard one; may be given again")
            ->type_name("FILE")
            ->take_all()
            ->allow_extra_args(false);
        add("--cores", "N|auto|all", "Cores that an effect may use: 1 to 8, auto or all",
            [&options](const std::string& word) { options.cores = ParseCores(word); });
        add("--quality", "N", "Quality for .jpg, .webp and other lossy files, 1 to 100 (90)",
            [&options](const std::string& word) {
                options.quality = static_cast<int>(ParseCount("--quality", word, 1, 100));
            });
        add("--max-pixels", "N",
            "Refuse images of more pixels than this; without it, than a file of that size is likely to have",
            [&options](const std::string& word) {
                options.maxPixels = ParseCount("--max-pixels", word, 1, INT64_MAX);
            });
        add("--limit-time", "SECONDS", "Stop after this time; without it, decoders that seem to hang are stopped",
            [&options](const std::string& word) { options.limits.seconds = ParseSeconds("--limit-time", word); });
        add("--limit-memory", "BYTES", "Stop at this much memory, such as 500M or 2G; without it, by the files' sizes",
            [&options](const std::string& word) { options.limits.memory = ParseBytes("--limit-memory", word); });
        program_.add_flag("--all-loaders", options.allLoaders,
                          "Try every kind of file that libvips reads, not only trusted ones");
        program_.add_flag("--allow-damaged", options.allowDamaged, "Take what can be read of a damaged file");
        program_.add_flag("--force", options.force, "Replace the output file if it exists");
        program_.add_flag("--quiet", options.quiet, "No notes and no progress line on standard error");
    }

    void RefuseExtra(const std::string& extra) const {
        std::vector<std::string> names, options;
        const auto add = [&options](const CLI::App& app) {
            for (const CLI::Option* option : app.get_options()) {
                for (const std::string& name : option->get_lnames()) options.push_back("--" + name);
            }
        };
        add(program_);
        for (const auto& [command, app] : commands_) {
            names.push_back(app->get_name());
            add(*app);
        }
        if (extra.starts_with("-")) throw UsageError("there is no option " + extra + text::Suggestion(extra, options));
        throw UsageError("there is no command " + text::Quoted(extra) + "; there are " + text::Listed(names));
    }

    CLI::App program_;
    std::vector<std::pair<std::unique_ptr<Command>, CLI::App*>> commands_;
};

/// Divides the command line at each --then. Later pieces are read as an "apply" of their own, which keeps an effect's
/// properties and mask together.
std::vector<std::vector<std::string>> SplitAtThen(int count, const char* const* words) {
    std::vector<std::vector<std::string>> pieces(1);
    bool onlyFiles = false;  // after "--"
    for (int i = 1; i < count; ++i) {
        const std::string word = words[i];
        if (onlyFiles) {
            pieces.back().push_back(word.starts_with('-') ? "./" + word : word);
        } else if (word == "--") {
            onlyFiles = true;
        } else if (word == "--then") {
            pieces.push_back({"apply"});
        } else {
            pieces.back().push_back(word);
        }
    }
    return pieces;
}

}  // namespace

std::optional<CommandLine> ReadCommandLine(int count, const char* const* words) {
    CommandLine line;
    if (count > 0) line.options.program = words[0];
    Parser parser(line.options);
    const auto pieces = SplitAtThen(count, words);
    for (std::size_t i = 0; i < pieces.size(); ++i) {
        if (!parser.Read(pieces[i])) return std::nullopt;
        if (i + 1 < pieces.size()) parser.Given()->Then();
    }
    line.command = std::move(parser.Given());
    line.command->Check();
    return line;
}

}  // namespace ombrix::cli
