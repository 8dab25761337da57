// ombrix list: what is registered, a line each, with full names to search for, and what trying tells of it.

#include <unistd.h>

#include <iostream>
#include <string>

#include "cli/commands/command.h"
#include "cli/failure.h"
#include "cli/property_text.h"
#include "cli/reflection.h"
#include "cli/supervisor/progress_of_work.h"
#include "cli/supervisor/supervisor.h"
#include "cli/terminal.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/wrapping.h"

namespace ombrix::cli {

namespace {

constexpr const char* kHelp =
    R"(Shows every effect, class and module that the plug-ins register, with properties, methods and constants.

Examples:
  ombrix list
  ombrix list blend
  ombrix list | grep Picture
  ombrix list sepia --json

NAME is an effect, a class or a module to show alone. What effects inherit is shown with --all.
--json tells programs all that is known of the effects, or of the effect NAME.)";

constexpr const char* kUsage = R"(  ombrix list [NAME] [--all | --json])";

const Command::About kAbout = {"list", "Show what the plug-ins register", {kHelp, kUsage}};

constexpr std::size_t kMemberIndent = 12;  // below the names of members

void PrintText(const std::string& text, std::size_t indent) {
    if (text.empty()) return;
    std::cout << text::Wrapped(std::string(indent, ' ') + text, LineWidth(STDOUT_FILENO), indent) << '\n';
}

void PrintLine(const char* kind, const std::string& text, const std::string& origin) {
    std::cout << kind << text << (origin.empty() ? "" : "  (from " + origin + ")") << '\n';
}

class Printer {
  public:
    Printer(const Session& session, bool all) : host_(session.host), catalogue_(session.catalogue), all_(all) {}

    /// Each member once, where it is declared.
    void PrintAll() const {
        const char* gap = "";
        const auto print = [&](const auto& info) {
            if (info.plugin.empty()) return;  // the host's own
            std::cout << gap;
            PrintHeading(info);
            PrintMembers(info.name, info, info);
            gap = "\n";
        };
        for (const host::ClassInfo& type : host_.Classes()) {
            if (all_ || !IsBase(type)) print(type);
        }
        for (const host::ModuleInfo& module : host_.Modules()) print(module);
    }

    /// A module, or a class with what it inherits.
    void PrintOne(const std::string& name) const {
        const Owner owner = FindOwner(host_, name);
        if (!owner.type) {
            PrintHeading(*owner.module);
            PrintMembers(owner.Name(), *owner.module, *owner.module);
            return;
        }
        PrintHeading(*owner.type);
        for (const host::ClassInfo* ancestor : host_.Ancestry(owner.type->name)) {
            if (all_ || ancestor == owner.type || !IsBase(*ancestor))
                PrintMembers(owner.Name(), *owner.type, *ancestor);
        }
    }

  private:
    bool IsEffect(const host::ClassInfo& type) const { return host_.IsA(type.name, host::kEffectInterface); }

    /// A class that is no effect and has one derived from it.
    bool IsBase(const host::ClassInfo& type) const {
        if (IsEffect(type)) return false;
        for (const host::ClassInfo& other : host_.Classes()) {
            if (IsEffect(other) && host_.IsA(other.name, type.name)) return true;
        }
        return false;
    }

    void PrintHeading(const host::ClassInfo& type) const {
        std::cout << "class " << type.name;
        if (!type.superclass.empty()) std::cout << ", derived from " << type.superclass;
        if (!type.interfaces.empty()) std::cout << ", implements " << text::Listed(type.interfaces);
        std::cout << '\n';
        PrintText(catalogue_.Description(type), 2);
    }
    static void PrintHeading(const host::ModuleInfo& module) { std::cout << "module " << module.name << '\n'; }

    /// What values the property takes, if people can type it, and what they do.
    std::string About(const host::ClassInfo& type, const host::ClassInfo& declaring,
                      const host::PropertyInfo& property) const {
        const std::string description = catalogue_.Description(declaring, property.name);
        if (!IsEffect(declaring)) return description;
        const catalogue::Effect& effect = *catalogue_.Find(type.name);
        return TextOf(effect, *effect.FindProperty(property.name));
    }

    /// Members that `owner`, whose record is `info`, has or inherits from `declaring`.
    template <class Info>
    void PrintMembers(const std::string& owner, const Info& info, const Info& declaring) const {
        const std::string origin = owner == declaring.name ? "" : declaring.name;
        if constexpr (requires { declaring.properties; }) {
            for (const host::PropertyInfo& property : declaring.properties) {
                PrintLine(
                    "  property  ",
                    owner + "." + property.name + " as " + property.type + (property.readOnly ? ", read-only" : ""),
                    origin);
                PrintText(About(info, declaring, property), kMemberIndent);
            }
        }
        for (const host::MethodInfo& method : declaring.methods) {
            PrintLine("  method    ", owner + "." + method.declaration, origin);
        }
        for (const host::ConstantInfo& constant : declaring.constants) {
            PrintLine("  constant  ", owner + "." + constant.name + " = " + std::to_string(constant.value), origin);
        }
    }

    const host::Host& host_;
    const catalogue::Catalogue& catalogue_;
    const bool all_;
};

/// Lets the catalogue find out all that the JSON tells, with a name for whoever is to blame.
void TryAll(const catalogue::Effect& effect) {
    const Doing trying(Activity::Effect, effect.Name());
    for (const catalogue::Property& property : effect.Properties()) effect.ValuesOf(property);
    effect.WorksPixelByPixel();
}

class List : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override {
        app.add_option("words", words_)->group("");
        auto* all = app.add_flag("--all", all_, "Also what effects inherit from their base class");
        app.add_flag("--json", json_, "Effects alone, for programs: as JSON, on one line unless a terminal shows it")
            ->excludes(all);
    }

    Candidates Words(const host::Host& host, const catalogue::Catalogue& catalogue,
                     const std::vector<std::string>& given) const override {
        Candidates names;
        if (!given.empty()) return names;
        for (const catalogue::Effect& effect : catalogue.Effects()) {
            names.words.push_back({effect.Word(), effect.Description()});
        }
        for (const host::ClassInfo& type : host.Classes()) {
            if (!type.plugin.empty()) names.words.push_back({type.name, catalogue.Description(type)});
        }
        for (const host::ModuleInfo& module : host.Modules()) names.words.push_back({module.name, ""});
        return names;
    }

    void Check() override {
        if (words_.size() > 1) throw UsageError("list takes one class or module, not " + text::Listed(words_));
    }

    void Run(Session& session) override {
        // Effects are tried, and may fail in every way.
        const int indent = isatty(STDOUT_FILENO) != 0 ? 2 : -1;
        Supervise(session, {}, [this, indent](Session& worker) {
            if (json_) return PrintJson(worker, indent);
            const Printer printer(worker, all_);
            if (words_.empty()) {
                printer.PrintAll();
            } else {
                printer.PrintOne(words_.front());
            }
        });
    }

  private:
    void PrintJson(const Session& session, int indent) const {
        const catalogue::Effect* only = words_.empty() ? nullptr : &FindEffect(session, words_.front());
        for (const catalogue::Effect& effect : session.catalogue.Effects()) {
            if (!only || only == &effect) TryAll(effect);
        }
        std::cout << session.catalogue.Json(only, indent) << '\n';
    }

    std::vector<std::string> words_;
    bool all_ = false;
    bool json_ = false;
};

}  // namespace

std::unique_ptr<Command> MakeList() { return std::make_unique<List>(); }

}  // namespace ombrix::cli
