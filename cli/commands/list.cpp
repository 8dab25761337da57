// ombrix list: all that is registered, a line each, with full names to search for.

#include <iostream>
#include <string>

#include "cli/commands/command.h"
#include "cli/failure.h"
#include "cli/reflection.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

constexpr const char* kHelp = R"(Shows every class, property, method and constant that the plug-ins register.

Examples:
  ombrix list
  ombrix list BlendEffect
  ombrix list | grep Picture

NAME is a class or a module to show alone, with what the class inherits.)";

constexpr const char* kUsage = R"(  ombrix list [NAME])";

const Command::About kAbout = {"list", "Show what the plug-ins register", {kHelp, kUsage}};

void PrintLine(const char* kind, const std::string& text, const std::string& origin) {
    std::cout << kind << text << (origin.empty() ? "" : "  (from " + origin + ")") << '\n';
}

/// Members that `owner` has or inherits from `declaring`.
template <class Declaring>
void PrintMembers(const std::string& owner, const Declaring& declaring) {
    const std::string origin = owner == declaring.name ? "" : declaring.name;
    if constexpr (requires { declaring.properties; }) {
        for (const host::PropertyInfo& property : declaring.properties) {
            PrintLine("  property  ",
                      owner + "." + property.name + " as " + property.type + (property.readOnly ? ", read-only" : ""),
                      origin);
        }
    }
    for (const host::MethodInfo& method : declaring.methods) {
        PrintLine("  method    ", owner + "." + method.declaration, origin);
    }
    for (const host::ConstantInfo& constant : declaring.constants) {
        PrintLine("  constant  ", owner + "." + constant.name + " = " + std::to_string(constant.value), origin);
    }
}

void PrintHeading(const host::ClassInfo& type) {
    std::cout << "class " << type.name;
    if (!type.superclass.empty()) std::cout << ", derived from " << type.superclass;
    if (!type.interfaces.empty()) std::cout << ", implements " << text::Listed(type.interfaces);
    std::cout << '\n';
}

void PrintHeading(const host::ModuleInfo& module) { std::cout << "module " << module.name << '\n'; }

/// Each member once, where it is declared.
void PrintAll(const host::Host& host) {
    const char* gap = "";
    const auto print = [&gap](const auto& info) {
        if (info.plugin.empty()) return;  // the host's own
        std::cout << gap;
        PrintHeading(info);
        PrintMembers(info.name, info);
        gap = "\n";
    };
    for (const host::ModuleInfo& module : host.Modules()) print(module);
    for (const host::ClassInfo& type : host.Classes()) print(type);
}

/// A module, or a class with all that it inherits.
void PrintOne(const host::Host& host, const std::string& name) {
    const Owner owner = FindOwner(host, name);
    if (owner.type) {
        PrintHeading(*owner.type);
        for (const host::ClassInfo* ancestor : host.Ancestry(owner.type->name)) {
            PrintMembers(owner.Name(), *ancestor);
        }
    } else {
        PrintHeading(*owner.module);
        PrintMembers(owner.Name(), *owner.module);
    }
}

class List : public Command {
  public:
    const About& Describe() const override { return kAbout; }

    void AddOptions(CLI::App& app) override { app.add_option("words", words_)->group(""); }

    void Check() override {
        if (words_.size() > 1) throw UsageError("list takes one class or module, not " + text::Listed(words_));
    }

    void Run(Session& session) override {
        if (words_.empty()) {
            PrintAll(session.host);
        } else {
            PrintOne(session.host, words_.front());
        }
    }

  private:
    std::vector<std::string> words_;
};

}  // namespace

std::unique_ptr<Command> MakeList() { return std::make_unique<List>(); }

}  // namespace ombrix::cli
