// Every class, module, property, method and constant, a line each, with its full name so that a search finds it.

#include <iostream>
#include <string>

#include "cli/reflection.h"
#include "cli/session.h"
#include "cli/text.h"

namespace ombrix::cli {

namespace {

void PrintLine(const char* kind, const std::string& text, const std::string& origin) {
    std::cout << kind << text << (origin.empty() ? "" : "  (from " + origin + ")") << '\n';
}

/// The members that `declaring` has, as members of what is named `owner`.
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
    if (!type.interfaces.empty()) std::cout << ", implements " << Listed(type.interfaces);
    std::cout << '\n';
}

void PrintHeading(const host::ModuleInfo& module) { std::cout << "module " << module.name << '\n'; }

/// Each member once, under what declares it.
void PrintAll(const host::Host& host) {
    const char* gap = "";
    const auto print = [&gap](const auto& info) {
        if (info.plugin.empty()) return;  // the host's own, which no plug-in has registered
        std::cout << gap;
        PrintHeading(info);
        PrintMembers(info.name, info);
        gap = "\n";
    };
    for (const host::ModuleInfo& module : host.Modules()) print(module);
    for (const host::ClassInfo& type : host.Classes()) print(type);
}

/// All that the class has, inherited or its own, or the module.
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

}  // namespace

void List(Session& session, const ListCommand& command) {
    if (command.name) {
        PrintOne(session.host, *command.name);
    } else {
        PrintAll(session.host);
    }
}

}  // namespace ombrix::cli
