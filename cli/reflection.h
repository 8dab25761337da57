// Finds classes and their members by what a user types.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ombrix/host.h"

namespace ombrix::cli {

/// With or without the ending "Effect". Null when there is none.
const host::ClassInfo* FindClass(const host::Host& host, std::string_view name);
/// What a user types for the class: its name in small letters without the ending, where that finds no other class.
std::string ShortName(const host::Host& host, const host::ClassInfo& type);
/// A class that can be applied to a picture. A UsageError suggests a name when there is none.
const host::ClassInfo& FindEffect(const host::Host& host, std::string_view name);

/// The property that takes a progress handler, or null.
const host::PropertyInfo* FindProgressProperty(const host::Host& host, const host::ClassInfo& type);
/// Those that a command line can set.
std::vector<std::string> SettableProperties(const host::Host& host, const host::ClassInfo& type);

/// The class's own first, then its superclasses'.
std::vector<host::ConstantInfo> ConstantsOf(const host::Host& host, const host::ClassInfo& type);

/// A class or a module: one of the two is null.
struct Owner {
    const host::ClassInfo* type = nullptr;
    const host::ModuleInfo* module = nullptr;

    const std::string& Name() const { return type ? type->name : module->name; }
};

/// A class as FindClass finds it, or a module. A UsageError suggests a name when there is neither.
Owner FindOwner(const host::Host& host, std::string_view name);

}  // namespace ombrix::cli
