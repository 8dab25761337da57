// What is registered, as the plug-ins' records say it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::host {

/// The interfaces that classes can implement.
inline constexpr std::string_view kEffectInterface = "IGraphicsEffect";
inline constexpr std::string_view kInPlaceInterface = "IGraphicsEffectInPlace";
inline constexpr std::string_view kProgressInterface = "IProgressHandler";

struct ParameterInfo {
    std::string name;
    std::string type;       ///< "Integer", "Boolean", "Double", a class or an interface
    bool required = false;  ///< false for objects, which are nil when not given
};

struct MethodInfo {
    std::string name;
    std::vector<ParameterInfo> parameters;
    std::optional<std::string> resultType;
    std::string declaration;  ///< as registered
    std::int64_t flags = 0;
};

struct PropertyInfo {
    std::string name;
    std::string type;
    bool readOnly = false;
    std::int64_t flags = 0;
};

struct ConstantInfo {
    std::string name;
    std::int64_t value = 0;
    std::string declaration;  ///< as registered
};

struct ClassInfo {
    std::string name;
    std::string superclass;  ///< empty for none
    std::vector<std::string> interfaces;
    std::vector<PropertyInfo> properties;  ///< without those of superclasses
    std::vector<MethodInfo> methods;
    std::vector<ConstantInfo> constants;
    std::uint32_t flags = 0;
    std::string plugin;  ///< path of its file; empty for the host's own classes
};

struct ModuleInfo {
    std::string name;
    std::vector<MethodInfo> methods;
    std::vector<ConstantInfo> constants;
    std::string plugin;
};

}  // namespace ombrix::host
