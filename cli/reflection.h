// Finding registered classes and their members by what a user types.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/host.h"

namespace ombrix::cli {

/// The interfaces through which an effect is put on a picture.
inline constexpr std::string_view kEffectInterface = "IGraphicsEffect";
inline constexpr std::string_view kInPlaceInterface = "IGraphicsEffectInPlace";
/// The interface whose implementations take progress reports.
inline constexpr std::string_view kProgressInterface = "IProgressHandler";

/// A class by its name in any case, with or without its ending "Effect"; null when there is none.
const host::ClassInfo* FindClass(const host::Host& host, std::string_view name);
/// The same for a class that can be applied to a picture: a UsageError, which suggests a name, when there is none.
const host::ClassInfo& FindEffect(const host::Host& host, std::string_view name);

/// Whether the class or one of its superclasses implements the interface.
bool Implements(const host::Host& host, const host::ClassInfo& type, std::string_view interface);

/// A property by name, in any case, looked for from the class upwards; null when there is none.
const host::PropertyInfo* FindProperty(const host::Host& host, const host::ClassInfo& type, std::string_view name);
/// The property by which the class takes its progress handler, whatever its name; null for none.
const host::PropertyInfo* FindProgressProperty(const host::Host& host, const host::ClassInfo& type);
/// Names of the properties that a command line can set.
std::vector<std::string> SettableProperties(const host::Host& host, const host::ClassInfo& type);

/// Constants of the class first, then of its superclasses.
std::vector<host::ConstantInfo> ConstantsOf(const host::Host& host, const host::ClassInfo& type);

/// What members belong to: a class or a module, never both.
struct Owner {
    const host::ClassInfo* type = nullptr;
    const host::ModuleInfo* module = nullptr;

    const std::string& Name() const { return type ? type->name : module->name; }
};

/// A class, as FindClass finds it, or a module: a UsageError, which suggests a name, when there is neither.
Owner FindOwner(const host::Host& host, std::string_view name);

}  // namespace ombrix::cli
