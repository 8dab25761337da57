// Calls of methods and accessors on behalf of the program: arguments in, a value out, faults and exceptions thrown.
#pragma once

#include <string>
#include <vector>

#include "host/host_state.h"
#include "host/invoke.h"
#include "host/overloads.h"

namespace ombrix::host {

/// The value as plug-ins see it; a reference stays the value's.
Word ToWord(const Value& value, Kind kind);

/// A value that a plug-in hands out, its reference taken over. `source` is what faults call the place it came from; a
/// handle that is not a live object of the declared type is a fault, and nil.
Value TakeValue(HostState& host, Word word, const std::string& type, const std::string& source);

/// Calls a method, on `self` or, when that is null, of a module. `name` is what faults call it.
Value CallMethod(HostState& host, const std::string& name, REALobjectStruct* self, const Binding& binding);

}  // namespace ombrix::host
