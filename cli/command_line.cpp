#include "cli/command_line.h"

#include <algorithm>
#include <exception>
#include <iostream>
#include <string_view>
#include <utility>

#include "cli/failure.h"
#include "cli/help.h"
#include "cli/plugins.h"
#include "cli/supervisor/supervisor.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/printable.h"
#include "text/suggestions.h"

namespace ombrix::cli {

namespace {

const char* const kHelp = R"(ombrix applies image effects to image files.

Examples:
  ombrix sepia 30 photo.jpg old.jpg
  ombrix blend overlay texture.jpg photo.jpg out.jpg
  ombrix colorfilter Red=40 Blue=-20 --mask vignette.png photo.jpg warm.png
  ombrix contrast 25 --then brightness -10 photo.jpg look.jpg
  ombrix call ColorFilterEffect.Apply source=photo.jpg red=40 green=0 blue=-30 warm.png
  ombrix list
  ombrix list ColorFilterEffect
  ombrix gallery photo.jpg --fill texture.jpg -o gallery.html)";

HelpText ProgramHelp() {
    return {kHelp, "  ombrix EFFECT [VALUE ...] [NAME=VALUE ...] INPUT OUTPUT\n  ombrix COMMAND ... [OPTIONS]"};
}

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
    Parser(Options& options, host::Host& host, const catalogue::Catalogue& catalogue)
        : options_(options), host_(host), catalogue_(catalogue), program_("", "ombrix") {
        program_.formatter(HelpLayout(ProgramHelp));
        program_.set_version_flag("--version", "ombrix " OMBRIX_VERSION, "Show the version");
        program_.set_help_flag("-h,--help", "Show this help");
        program_.require_subcommand(0, 1);
        program_.allow_extras();
        program_.fallthrough();
        AddOptions(options);
        for (std::unique_ptr<Command>& command : MakeCommands()) {
            const Command::About& about = command->Describe();
            CLI::App* app = program_.add_subcommand(about.name, about.summary)->group("Commands");
            command->AddOptions(*app);
            AddForm({app, [&about] { return about.help; }}, *command);
            commands_.push_back(std::move(command));
        }
        for (const std::unique_ptr<Command>& command : commands_) {
            for (const Command::Form& form : command->AddForms(program_, catalogue)) AddForm(form, *command);
        }
    }

    /// False when it has printed help or the version.
    bool Read(std::vector<std::string> words) {
        try {
            std::reverse(words.begin(), words.end());  // the order that CLI11 wants
            program_.parse(std::move(words));
            if (!first_) first_ = GivenForm();
        } catch (const CLI::Success& asked) {
            // An effect's help tries the effect, which may fail in every way.
            Console console(options_.quiet);
            Session session{host_, catalogue_, options_, console};
            Supervise(session, {}, [&](Session&) { program_.exit(asked); });
            return false;
        } catch (const CLI::ParseError& wrong) {
            throw UsageError(text::OnOneLine(wrong.what()), Usage());
        }
        for (const std::string& extra : program_.remaining(true)) RefuseExtra(extra);
        return true;
    }

    /// What may come next on a line that is being typed.
    Candidates Complete(const std::vector<std::string>& line) const {
        const auto wordsOf = [this](const CLI::App& app, const std::vector<std::string>& given) {
            const auto form =
                std::ranges::find_if(forms_, [&](const CommandForm& each) { return each.form.app == &app; });
            return form->command.Words(host_, catalogue_, given);
        };
        return cli::Complete(program_, *program_.get_subcommand("apply"), catalogue_, wordsOf, line);
    }

    /// Calls a function of the command that was given, and adds its usage to a UsageError.
    void Ask(void (Command::*function)()) {
        try {
            (Given().*function)();
        } catch (const UsageError& wrong) {
            throw UsageError(wrong.what(), Usage());
        }
    }

    /// The command that was given. A UsageError when there is none.
    std::unique_ptr<Command> Take() {
        const Command* given = &Given();
        return std::move(*std::ranges::find_if(commands_, [given](const auto& each) { return each.get() == given; }));
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
        add("--quality", "N|keep", "Quality for .jpg, .webp and other lossy files, 1 to 100 (90), or a JPEG file's own",
            [&options](const std::string& word) {
                options.keepQuality = text::SameName(word, "keep");
                if (!options.keepQuality) options.quality = static_cast<int>(ParseCount("--quality", word, 1, 100));
            });
        add("--format", "SUFFIX", "Kind of file to write, such as png; without it, by the output's suffix",
            [&options](const std::string& word) { options.format = word; });
        add("--max-pixels", "N",
            "Refuse images of more pixels than this; without it, than a file of that size is likely to have",
            [&options](const std::string& word) {
                options.maxPixels = ParseCount("--max-pixels", word, 1, INT64_MAX);
            });
        add("--limit-time", "SECONDS",
            "Stop after this time; without it, work that takes too long for files of their size",
            [&options](const std::string& word) { options.limits.seconds = ParseSeconds("--limit-time", word); });
        add("--limit-memory", "BYTES", "Stop at this much memory, such as 500M or 2G; without it, by the files' sizes",
            [&options](const std::string& word) { options.limits.memory = ParseBytes("--limit-memory", word); });
        program_.add_flag("--all-loaders", options.allLoaders,
                          "Try every kind of file that libvips reads, not only trusted ones");
        program_.add_flag("--allow-damaged", options.allowDamaged, "Take what can be read of a damaged file");
        program_.add_flag("--force", options.force, "Replace the output file if it exists");
        program_.add_flag("--strip", options.strip, "Write no metadata: no EXIF, XMP, IPTC, comments, profile");
        program_.add_flag("--quiet", options.quiet, "No notes and no progress line on standard error");
    }

    struct CommandForm {
        Command::Form form;
        Command& command;
    };

    void AddForm(const Command::Form& form, Command& command) {
        form.app->formatter(HelpLayout(form.help));
        forms_.push_back({form, command});
    }

    /// Null when no command was given.
    const CommandForm* GivenForm() const {
        const auto given =
            std::ranges::find_if(forms_, [](const CommandForm& each) { return each.form.app->parsed(); });
        return given == forms_.end() ? nullptr : &*given;
    }

    Command& Given() const {
        if (const CommandForm* given = GivenForm()) return given->command;
        throw UsageError("there is no command; give an effect, as in: ombrix sepia 30 photo.jpg old.jpg, one of " +
                             text::Listed(CommandNames()),
                         Usage());
    }

    std::string Usage() const {
        const CommandForm* given = first_ ? first_ : GivenForm();
        return ShownUsage(given ? given->form.help() : ProgramHelp());
    }

    std::vector<std::string> CommandNames() const {
        std::vector<std::string> names;
        for (const auto& command : commands_) names.push_back(command->Describe().name);
        return names;
    }

    void RefuseExtra(const std::string& extra) const {
        const CommandForm* given = GivenForm();
        if (extra.starts_with("-")) {
            std::vector<std::string> options;
            for (const CLI::App* app : {&program_, given ? static_cast<const CLI::App*>(given->form.app) : &program_}) {
                for (const CLI::Option* option : app->get_options()) {
                    for (const std::string& name : option->get_lnames()) options.push_back("--" + name);
                }
            }
            const std::string nearest = text::NearestName(extra, options);
            throw UsageError("there is no option " + extra +
                                 (nearest.empty() ? "" : "; did you mean " + text::Quoted(nearest) + "?"),
                             Usage());
        }
        std::vector<std::string> names;
        for (const CommandForm& form : forms_) names.push_back(form.form.app->get_name());
        const std::string nearest = text::NearestName(extra, names);
        throw UsageError("there is no command or effect " + text::Quoted(extra) +
                             (nearest.empty() ? "; there are " + text::Listed(names)
                                              : "; did you mean " + text::Quoted(nearest) + "?"),
                         ShownUsage(ProgramHelp()));
    }

    const Options& options_;
    host::Host& host_;
    const catalogue::Catalogue& catalogue_;
    CLI::App program_;
    std::vector<std::unique_ptr<Command>> commands_;
    std::vector<CommandForm> forms_;
    const CommandForm* first_ = nullptr;  ///< given before any --then
};

/// The plug-ins that the command line names. They have to be loaded before it can be read as a whole.
std::vector<std::filesystem::path> PluginsNamed(std::vector<std::string> words) {
    CLI::App reader;
    reader.set_help_flag();
    reader.allow_extras();
    std::vector<std::filesystem::path> plugins;
    reader.add_option("--plugin", plugins)->take_all()->allow_extra_args(false);
    try {
        std::reverse(words.begin(), words.end());
        reader.parse(std::move(words));
    } catch (const CLI::ParseError&) {
        plugins.clear();  // which the full reading tells
    }
    return plugins;
}

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

/// "ombrix complete", which shells ask. Each word of the line that is being typed ends with a zero byte.
void PrintCandidates(host::Host& host) {
    std::vector<std::string> line;
    for (std::string word; std::getline(std::cin, word, '\0');) line.push_back(word);
    try {
        LoadPlugins(host, PluginsNamed(line));
    } catch (const std::exception&) {
        // Nobody wants to read of it now.
    }
    Options options;
    const catalogue::Catalogue catalogue(host, {});
    const Candidates candidates = Parser(options, host, catalogue).Complete(line);
    for (const Candidate& each : candidates.words)
        std::cout << each.word << '\t' << text::Printable(each.about) << '\n';
    if (candidates.files) std::cout << ":files\n";
}

}  // namespace

std::optional<CommandLine> ReadCommandLine(int count, const char* const* words, host::Host& host) {
    if (count == 2 && std::string_view(words[1]) == "complete") {
        PrintCandidates(host);
        return std::nullopt;
    }
    std::exception_ptr missing;
    CommandLine line;
    try {
        line.brokenPlugins = LoadPlugins(host, PluginsNamed({words + std::min(count, 1), words + count}));
    } catch (...) {
        missing = std::current_exception();  // help is for those, too, who look for what is wrong
    }
    if (count > 0) line.options.program = words[0];
    line.catalogue = std::make_unique<catalogue::Catalogue>(host, line.brokenPlugins);
    Parser parser(line.options, host, *line.catalogue);
    try {
        const auto pieces = SplitAtThen(count, words);
        for (std::size_t i = 0; i < pieces.size(); ++i) {
            if (!parser.Read(pieces[i])) return std::nullopt;
            if (i + 1 < pieces.size()) parser.Ask(&Command::Then);
        }
        parser.Ask(&Command::Check);
    } catch (const UsageError&) {
        if (!missing) throw;
    }
    // Without a plug-in its effects are unknown commands, which is not the user's mistake.
    if (missing) std::rethrow_exception(missing);
    line.command = parser.Take();
    return line;
}

}  // namespace ombrix::cli
