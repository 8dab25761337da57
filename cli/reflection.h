// Finds classes and their members by what a user types.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/session.h"

namespace ombrix::cli {

/// With or without the ending "Effect". Null when there is none.
const host::ClassInfo* FindClass(const host::Host& host, std::string_view name);
/// By class or word. A UsageError suggests a name when there is none.
const catalogue::Effect& FindEffect(const Session& session, std::string_view name);

/// The property that takes a progress handler, or null.
const host::PropertyInfo* FindProgressProperty(const host::Host& host, const host::ClassInfo& type);
/// Those that a command line can set.
std::vector<std::string> SettableProperties(const host::Host& host, const host::ClassInfo& type);

/// The class's own first, then its superclasses'.
std::vector<catalogue::Constant> ConstantsOf(const host::Host& host, const host::ClassInfo& type);

/// A class or a module: one of the two is null.
struct Owner {
    const host::ClassInfo* type = nullptr;
    const host::ModuleInfo* module = nullptr;

    const std::string& Name() const { return type ? type->name : module->name; }
};

/// A class as FindClass finds it, or a module. A UsageError suggests a name when there is neither.
Owner FindOwner(const host::Host& host, std::string_view name);

}  // namespace ombrix::cli
