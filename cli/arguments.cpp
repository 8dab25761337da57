#include "cli/arguments.h"

#include <charconv>
#include <iostream>

#include "cli/failure.h"
#include "cli/help.h"
#include "cli/text.h"
#include "host/text.h"

namespace ombrix::cli {

namespace {

/// A setting has a name of the host's language before its "=". Anything else is a file name.
bool LooksLikeSetting(std::string_view word) {
    const auto letter = [](char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; };
    const std::size_t equals = word.find('=');
    if (equals == std::string_view::npos || equals == 0 || !letter(word[0])) return false;
    return word.substr(0, equals).find_first_not_of(
               "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_") == std::string_view::npos;
}

Setting AsSetting(const std::string& word) {
    const std::size_t equals = word.find('=');
    return {word.substr(0, equals), word.substr(equals + 1)};
}

std::int64_t ParseCount(const std::string& option, const std::string& text, std::int64_t low, std::int64_t high) {
    std::int64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size() || number < low || number > high) {
        const std::string range =
            high == INT64_MAX ? std::to_string(low) + " up" : std::to_string(low) + " to " + std::to_string(high);
        throw UsageError(option + " takes a whole number from " + range + ", not \"" + text + "\"");
    }
    return number;
}

std::int64_t ParseCores(const std::string& text) {
    if (host::SameName(text, "auto")) return 0;
    if (host::SameName(text, "all")) return -1;
    try {
        return ParseCount("--cores", text, 1, 8);
    } catch (const UsageError&) {
        throw UsageError("--cores takes a number from 1 to 8, auto or all, not \"" + text + "\"");
    }
}

/// What one reading of (a piece of) the command line finds besides the options.
struct Words {
    std::vector<std::string> apply, call, list, gallery;
    std::string mask;
    bool inPlace = false;
    std::string page, sheet, fill, size;
};

/// The parser, and the variables that it fills.
class Parser {
  public:
    Parser(Options& options, Words& words) : app_("", "ombrix") {
        app_.formatter(HelpLayout(kProgramHelp));
        app_.set_version_flag("--version", "ombrix " OMBRIX_VERSION, "Show the version");
        app_.set_help_flag("-h,--help", "Show this help");
        app_.require_subcommand(0, 1);
        app_.allow_extras();
        app_.fallthrough();
        AddOptions(options);

        apply_ = AddCommand("apply", "Put one effect, or a chain of effects, on a picture", kApplyHelp, words.apply);
        apply_->add_option("--mask", words.mask, "Image that weighs the effect: black takes all of it, white none")
            ->type_name("FILE");
        apply_->add_flag("--then")->description("Ends one effect and begins the next of a chain");
        apply_->add_flag("--in-place", words.inPlace, "Change the file INPUT itself");
        call_ = AddCommand("call", "Call a method of a class or a module", kCallHelp, words.call);
        list_ = AddCommand("list", "Show what the plug-ins register", kListHelp, words.list);
        gallery_ = AddCommand("gallery", "Show a picture under every effect", kGalleryHelp, words.gallery);
        AddGalleryOptions(words);
    }

    /// False when help or the version was asked for and printed.
    bool Read(std::vector<std::string> words) {
        try {
            std::reverse(words.begin(), words.end());  // as CLI11 wants them
            app_.parse(std::move(words));
        } catch (const CLI::Success& asked) {
            app_.exit(asked);
            return false;
        } catch (const CLI::ArgumentMismatch& missing) {
            throw UsageError(OnOneLine(missing.what()) + "; --help shows how it is used");
        } catch (const CLI::ParseError& wrong) {
            throw UsageError(OnOneLine(wrong.what()));
        }
        for (const std::string& extra : app_.remaining(true)) RefuseExtra(extra);
        return true;
    }

    bool Applies() const { return apply_->parsed(); }
    bool Calls() const { return call_->parsed(); }
    bool Lists() const { return list_->parsed(); }
    bool Shows() const { return gallery_->parsed(); }

  private:
    void AddOptions(Options& options) {
        const auto add = [this](const char* name, const char* type, const char* about, auto take) {
            app_.add_option_function<std::string>(name, take, about)->type_name(type)->take_last();
        };
        app_.add_option_function<std::vector<std::string>>(
                "--plugin",
                [&options](const std::vector<std::string>& files) {
                    options.plugins.insert(options.plugins.end(), files.begin(), files.end());
                },
                "A further plug-in to load after the standard one; may be given again")
            ->type_name("FILE")
            ->take_all()
            ->allow_extra_args(false);
        add("--cores", "N|auto|all", "Cores that an effect may use: 1 to 8, auto or all",
            [&options](const std::string& text) { options.cores = ParseCores(text); });
        add("--quality", "N", "Quality for .jpg, .webp and other lossy files, 1 to 100 (90)",
            [&options](const std::string& text) {
                options.quality = static_cast<int>(ParseCount("--quality", text, 1, 100));
            });
        add("--max-pixels", "N", "Refuse images of more pixels than this (1000000000)",
            [&options](const std::string& text) {
                options.maxPixels = ParseCount("--max-pixels", text, 1, INT64_MAX);
            });
        app_.add_flag("--force", options.force, "Replace the output file if it exists");
        app_.add_flag("--quiet", options.quiet, "No notes and no progress line on standard error");
    }

    void AddGalleryOptions(Words& words) {
        const auto add = [this](const char* name, const char* type, const char* about, std::string& word) {
            gallery_->add_option(name, word, about)->type_name(type);
        };
        add("-o,--output", "FILE", "The page to write, a .html file", words.page);
        add("--sheet", "FILE", "The same as one picture, a contact sheet", words.sheet);
        add("--fill", "FILE", "Image for effects that lay one over the picture", words.fill);
        add("--mask", "FILE", "Image that weighs effects, instead of a drawn one", words.mask);
        add("--size", "N", "Pixels of the longer side of the page's pictures, 64 to 8192 (1120)", words.size);
    }

    CLI::App* AddCommand(const char* name, const char* summary, const HelpText& help, std::vector<std::string>& words) {
        CLI::App* command = app_.add_subcommand(name, summary);
        command->formatter(HelpLayout(help));
        command->add_option("words", words)->group("");
        return command;
    }

    void RefuseExtra(const std::string& extra) const {
        if (extra.starts_with("-")) {
            std::vector<std::string> known;
            for (const CLI::App* app : {static_cast<const CLI::App*>(&app_), static_cast<const CLI::App*>(apply_),
                                        static_cast<const CLI::App*>(gallery_)}) {
                for (const CLI::Option* option : app->get_options()) {
                    for (const std::string& name : option->get_lnames()) known.push_back("--" + name);
                }
            }
            throw UsageError("there is no option " + extra + host::Suggestion(extra, known));
        }
        std::vector<std::string> commands;
        for (const CLI::App* command : {apply_, call_, list_, gallery_}) commands.push_back(command->get_name());
        throw UsageError("there is no command \"" + extra + "\"; there are " + Listed(commands));
    }

    CLI::App app_;
    CLI::App* apply_ = nullptr;
    CLI::App* call_ = nullptr;
    CLI::App* list_ = nullptr;
    CLI::App* gallery_ = nullptr;
};

/// Splits settings from file names.
void Sort(const std::vector<std::string>& words, std::vector<Setting>& settings, std::vector<std::string>& files) {
    for (const std::string& word : words) {
        if (LooksLikeSetting(word)) {
            settings.push_back(AsSetting(word));
        } else {
            files.push_back(word);
        }
    }
}

Step AsStep(const Words& words, std::vector<std::string>& files) {
    if (words.apply.empty() || LooksLikeSetting(words.apply.front())) {
        throw UsageError("apply begins with the name of an effect, as in: ombrix apply invert photo.jpg negative.jpg");
    }
    Step step{words.apply.front(), {}, {}};
    Sort({words.apply.begin() + 1, words.apply.end()}, step.settings, files);
    if (!words.mask.empty()) step.mask = words.mask;
    return step;
}

ApplyCommand AsApply(std::vector<Step> steps, const std::vector<std::string>& files, bool inPlace) {
    const std::size_t needed = inPlace ? 1 : 2;
    if (files.size() != needed) {
        const std::string form =
            inPlace ? "--in-place takes one file, which is changed" : "apply takes INPUT and OUTPUT";
        throw UsageError(form + ", and was given " +
                         (files.empty() ? "no file" : Listed(files) + " after the effect's name"));
    }
    return {std::move(steps), files.front(), files.back(), inPlace};
}

CallCommand AsCall(const std::vector<std::string>& words) {
    const std::size_t dot = words.empty() ? std::string::npos : words.front().find('.');
    if (dot == std::string::npos || dot == 0 || dot + 1 == words.front().size()) {
        throw UsageError(
            "call begins with CLASS.METHOD or MODULE.METHOD, as in: "
            "ombrix call ColorFilterEffect.Apply source=photo.jpg red=40 green=0 blue=0 warm.png");
    }
    CallCommand call{words.front().substr(0, dot), words.front().substr(dot + 1), {}, {}};
    std::vector<std::string> files;
    Sort({words.begin() + 1, words.end()}, call.arguments, files);
    if (files.size() > 1) {
        throw UsageError("call takes one OUTPUT, and was given " + Listed(files) +
                         "; arguments are given by name, as in source=" + files.front());
    }
    if (!files.empty()) call.output = files.front();
    return call;
}

GalleryCommand AsGallery(const Words& words, const char* program) {
    if (words.gallery.size() != 1) {
        throw UsageError("gallery shows one picture, and was given " +
                         (words.gallery.empty() ? "none" : Listed(words.gallery)));
    }
    const auto file = [](const std::string& word) {
        return word.empty() ? std::nullopt : std::optional<std::filesystem::path>(word);
    };
    GalleryCommand gallery{program,          words.gallery.front(), file(words.fill),
                           file(words.mask), file(words.page),      file(words.sheet)};
    if (!words.size.empty()) gallery.size = static_cast<int>(ParseCount("--size", words.size, 64, 8192));
    return gallery;
}

/// The pieces of the command line between one --then and the next. Each later piece is read as an "apply" of its own,
/// so that its effect, properties and mask stay together.
std::vector<std::vector<std::string>> SplitAtThen(int count, const char* const* words) {
    std::vector<std::vector<std::string>> pieces(1);
    bool onlyFiles = false;  // after "--", the usual sign that what follows are no options
    for (int i = 1; i < count; ++i) {
        const std::string_view word = words[i];
        if (onlyFiles) {
            pieces.back().push_back(word.starts_with('-') ? "./" + std::string(word) : std::string(word));
        } else if (word == "--") {
            onlyFiles = true;
        } else if (word == "--then") {
            pieces.push_back({"apply"});
        } else {
            pieces.back().emplace_back(words[i]);
        }
    }
    return pieces;
}

}  // namespace

std::optional<Arguments> ParseArguments(int count, const char* const* words) {
    Arguments arguments;
    Words found;
    Parser parser(arguments.options, found);

    std::vector<Step> steps;
    std::vector<std::string> files;
    const auto pieces = SplitAtThen(count, words);
    for (const std::vector<std::string>& piece : pieces) {
        found.apply.clear();
        found.mask.clear();
        if (!parser.Read(piece)) return std::nullopt;
        if (!parser.Applies()) break;
        if (!files.empty()) throw UsageError("the files " + Listed(files) + " stand before --then; they go at the end");
        steps.push_back(AsStep(found, files));
    }

    if (parser.Applies()) {
        arguments.command = AsApply(std::move(steps), files, found.inPlace);
    } else if (pieces.size() > 1) {
        throw UsageError("--then goes between the effects of apply");
    } else if (parser.Calls()) {
        arguments.command = AsCall(found.call);
    } else if (parser.Lists()) {
        if (found.list.size() > 1) throw UsageError("list takes one class or module, not " + Listed(found.list));
        arguments.command = ListCommand{found.list.empty() ? std::nullopt : std::optional(found.list.front())};
    } else if (parser.Shows()) {
        arguments.command = AsGallery(found, words[0]);
    } else {
        throw UsageError("there is no command; give apply, call, list or gallery (ombrix --help shows examples)");
    }
    return arguments;
}

}  // namespace ombrix::cli
