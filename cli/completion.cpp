#include "cli/completion.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "text/names.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

/// What the words before the last one have come to.
class Reader {
  public:
    Reader(const CLI::App& program, const CLI::App& apply, const catalogue::Catalogue& catalogue)
        : program_(program), apply_(apply), catalogue_(catalogue) {}

    void Read(const std::string& word) {
        if (option != nullptr) {
            option = nullptr;
        } else if (onlyFiles) {
            return;
        } else if (word == "--") {
            onlyFiles = true;
        } else if (word == "--then") {
            BeginEffect();
        } else if (word.starts_with("-") && word.size() > 1) {
            const CLI::Option* given = FindOption(word);
            if (given != nullptr && given->get_type_size() > 0 && word.find('=') == std::string::npos) option = given;
        } else if (command == nullptr) {
            BeginCommand(word);
        } else if (wantsEffect) {
            wantsEffect = false;
            effect = catalogue_.Find(word);
        } else if (effect == nullptr || !SetsProperty(word)) {
            words.push_back(word);
        }
    }

    /// "--mask" or "--mask=file". Null when there is none.
    const CLI::Option* FindOption(const std::string& word) const {
        const std::string name = word.substr(0, word.find('='));
        for (const CLI::App* app : {command, &program_}) {
            if (app == nullptr) continue;
            for (const CLI::Option* each : app->get_options()) {
                if (each->check_name(name)) return each;
            }
        }
        return nullptr;
    }

    const catalogue::Property* FindProperty(const std::string& word) const {
        return effect == nullptr ? nullptr : effect->FindProperty(word.substr(0, word.find('=')));
    }

    const CLI::App* command = nullptr;          ///< null before there is one
    bool wantsEffect = false;                   ///< the next word is one
    const catalogue::Effect* effect = nullptr;  ///< of the values that follow
    std::vector<std::string> named;             ///< properties that have values by name
    std::vector<std::string> words;             ///< others, since the command or the effect
    const CLI::Option* option = nullptr;        ///< whose value the next word is
    bool onlyFiles = false;                     ///< after "--", or where nothing is known

  private:
    void BeginCommand(const std::string& word) {
        for (const CLI::App* each : program_.get_subcommands([](const CLI::App*) { return true; })) {
            if (!each->check_name(word)) continue;
            command = each;
            wantsEffect = each == &apply_;
            effect = wantsEffect ? nullptr : EffectOf(*each);
            return;
        }
        onlyFiles = true;  // there is no such command
    }

    void BeginEffect() {
        command = &apply_;
        wantsEffect = true;
        effect = nullptr;
        named.clear();
        words.clear();
    }

    /// Of a subcommand that stands for one.
    const catalogue::Effect* EffectOf(const CLI::App& app) const {
        const auto& effects = catalogue_.Effects();
        const auto found =
            std::ranges::find_if(effects, [&app](const auto& each) { return each.Word() == app.get_name(); });
        return app.get_group() == "Effects" && found != effects.end() ? &*found : nullptr;
    }

    bool SetsProperty(const std::string& word) {
        if (word.find('=') == std::string::npos) return false;
        const catalogue::Property* property = FindProperty(word);
        if (property == nullptr) return false;
        named.push_back(property->name);
        return true;
    }

    const CLI::App& program_;
    const CLI::App& apply_;
    const catalogue::Catalogue& catalogue_;
};

/// The candidates for a word that has been typed in part.
class Collector {
  public:
    explicit Collector(std::string typed) : typed_(std::move(typed)) {}

    /// Of `about` the first sentence is shown.
    void Add(const std::string& word, const std::string& about = "") {
        const auto isThis = [&word](const Candidate& each) { return each.word == word; };
        if (!word.starts_with(typed_) || std::ranges::any_of(found.words, isThis)) return;
        found.words.push_back({word, text::OnOneLine(about.substr(0, about.find(". ")))});
    }

    /// Values of an option, by what the help shows: "N|auto|all" are a number, and two words.
    void AddValues(const CLI::Option& option, const std::string& before) {
        std::string_view type = option.get_type_name();
        while (!type.empty()) {
            const std::size_t end = std::min(type.find('|'), type.size());
            const std::string_view value = type.substr(0, end);
            type.remove_prefix(std::min(end + 1, type.size()));
            if (value == "FILE" || value == "DIR") found.files = true;
            if (std::islower(static_cast<unsigned char>(value.front())) != 0) Add(before + std::string(value));
        }
    }

    void AddOptions(const CLI::App& app) {
        for (const CLI::Option* option : app.get_options()) {
            if (option->get_group().empty()) continue;
            for (const std::string& name : option->get_lnames()) Add("--" + name, option->get_description());
            for (const std::string& name : option->get_snames()) {
                if (typed_ == "-" || !typed_.starts_with("--")) Add("-" + name, option->get_description());
            }
        }
    }

    /// `before`: the "NAME=" that the value follows, or nothing.
    void AddValues(const catalogue::Effect& effect, const catalogue::Property& property, const std::string& before) {
        for (const catalogue::Constant& constant : effect.ConstantsOf(property)) Add(before + constant.word);
        if (text::SameName(property.type, "Boolean")) {
            for (const char* value : {"true", "false"}) Add(before + value);
        }
        if (text::SameName(property.type, "Picture")) found.files = true;
    }

    /// Names as registered for whoever begins one with a capital.
    void AddProperties(const Reader& line) {
        const bool asRegistered = !typed_.empty() && std::isupper(static_cast<unsigned char>(typed_.front())) != 0;
        for (const catalogue::Property& property : line.effect->Properties()) {
            if (property.readOnly || property.inherited || std::ranges::count(line.named, property.name) > 0) continue;
            Add((asRegistered ? property.name : property.word) + "=", property.description);
        }
    }

    Candidates found;

  private:
    const std::string typed_;
};

void AddEffects(Collector& collector, const catalogue::Catalogue& catalogue) {
    for (const catalogue::Effect& effect : catalogue.Effects()) collector.Add(effect.Word(), effect.Description());
}

}  // namespace

Candidates Complete(const CLI::App& program, const CLI::App& apply, const catalogue::Catalogue& catalogue,
                    const WordsOf& wordsOf, const std::vector<std::string>& line) {
    Reader reader(program, apply, catalogue);
    const std::string typed = line.empty() ? "" : line.back();
    for (std::size_t i = 0; i + 1 < line.size(); ++i) reader.Read(line[i]);

    Collector collector(typed);
    const std::size_t equals = typed.find('=');
    const std::string before = equals == std::string::npos ? "" : typed.substr(0, equals + 1);
    if (reader.option != nullptr) {
        collector.AddValues(*reader.option, "");
    } else if (reader.onlyFiles) {
        collector.found.files = true;
    } else if (typed.starts_with("-") && !before.empty()) {
        if (const CLI::Option* option = reader.FindOption(typed)) collector.AddValues(*option, before);
    } else if (typed.starts_with("-")) {
        if (reader.command != nullptr) collector.AddOptions(*reader.command);
        collector.AddOptions(program);
        if (typed == "-") collector.found.files = true;  // which is standard input as well
    } else if (reader.command == nullptr) {
        for (const CLI::App* each : program.get_subcommands([](const CLI::App*) { return true; })) {
            if (!each->get_group().empty()) collector.Add(each->get_name(), each->get_description());
        }
    } else if (reader.wantsEffect) {
        AddEffects(collector, catalogue);
    } else if (reader.effect != nullptr) {
        if (!before.empty()) {
            if (const catalogue::Property* property = reader.FindProperty(typed)) {
                collector.AddValues(*reader.effect, *property, before);
                return collector.found;
            }
        }
        std::vector<const catalogue::Property*> positions = reader.effect->ByPosition();
        std::erase_if(positions, [&](const auto* each) { return std::ranges::count(reader.named, each->name) > 0; });
        if (reader.words.size() < positions.size()) {
            collector.AddValues(*reader.effect, *positions[reader.words.size()], "");
        }
        collector.AddProperties(reader);
        collector.found.files = true;
    } else {
        const Candidates taken = wordsOf(*reader.command, reader.words);
        for (const Candidate& candidate : taken.words) collector.Add(candidate.word, candidate.about);
        collector.found.files = taken.files;
    }
    return collector.found;
}

}  // namespace ombrix::cli
