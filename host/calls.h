// Calls of methods on behalf of the program. Faults, and what the program threw on the way, end them with an exception.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/host_state.h"
#include "host/invoke.h"
#include "host/overloads.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::host {

/// The value as plug-ins take it. It keeps its reference.
Word ToWord(const Value& value, Kind kind);

/// Takes over a value that a plug-in returned, with its reference. A handle that is no live object of the declared type
/// is a fault, which names `source`, and becomes nil.
Value TakeValue(HostState& host, Word word, const std::string& type, const std::string& source);

/// Calls a method of `self`, or of a module when that is null. Faults name it `name`.
Value CallMethod(HostState& host, const std::string& name, REALobjectStruct* self, const Binding& binding);

/// Calls the method that fits the arguments best. A module's methods have no `self`.
template <class Owner>
Value CallNamed(HostState& host, REALobjectStruct* self, const Owner& owner, std::string_view method,
                const std::vector<Argument>& arguments) {
    const std::vector<const Method*> candidates = MethodsNamed(owner, method);
    if (candidates.empty()) {
        throw Error(owner.info.name + " has no method " + text::Quoted(method) +
                    text::Suggestion(method, MethodNames(owner)));
    }
    const std::string name = owner.info.name + "." + candidates.front()->declaration.name;
    return CallMethod(host, name, self, ChooseOverload(name, candidates, arguments));
}

/// Calls the method with the signature of `declared`, whose parameters name the arguments.
template <class Owner>
Value CallDeclared(HostState& host, REALobjectStruct* self, const Owner& owner, Method declared,
                   const std::vector<Argument>& arguments) {
    const Method* found = FindMethod(owner, declared.declaration.Signature());
    if (found == nullptr) throw Error(owner.info.name + " has no method " + text::Quoted(declared.written));
    declared.function = found->function;
    const std::string name = owner.info.name + "." + found->declaration.name;
    return CallMethod(host, name, self, ChooseOverload(name, {&declared}, arguments));
}

}  // namespace ombrix::host
