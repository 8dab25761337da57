// What the loaded plug-ins have registered, for programs that show or complete it. Nothing here is known to the host
// in advance: every name comes from a plug-in's records (or, for Picture, Point and Graphics, from the host's own).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace ombrix::host {

struct ParameterInfo {
    std::string name;
    std::string type;  ///< as declared: "Integer", "Boolean", "Double", "Picture", "Point", an interface or class
};

struct MethodInfo {
    std::string name;
    std::vector<ParameterInfo> parameters;
    std::optional<std::string> resultType;
    std::string declaration;  ///< as registered, to the letter
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
    std::vector<PropertyInfo> properties;  ///< of this class alone; superclasses have their own entries
    std::vector<MethodInfo> methods;
    std::vector<ConstantInfo> constants;
    std::uint32_t flags = 0;
    std::string plugin;  ///< path of the shared object it came from; empty for the host's own classes
};

struct ModuleInfo {
    std::string name;
    std::vector<MethodInfo> methods;
    std::vector<ConstantInfo> constants;
    std::string plugin;
};

}  // namespace ombrix::host
