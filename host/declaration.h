// Declarations of methods and constants, as plug-ins write them into their rows.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "ombrix/reflection.h"

namespace ombrix::host {

/// How a value is passed and stored. All types beside the first three are references.
enum class Kind { Integer, Boolean, Double, Object };

Kind KindOf(std::string_view type);
/// Bytes that a stored value takes.
std::size_t SizeOf(Kind kind);

struct MethodDeclaration {
    std::string name;
    std::vector<ParameterInfo> parameters;
    bool assigns = false;  ///< the last parameter is assigned to, as in `picture.Mask = newMask`
    std::optional<std::string> resultType;

    /// Lower-case name and types of the parameters; unique within a class.
    std::string ParameterSignature() const;
    /// The same with the type of the result: what plug-ins look methods up by.
    std::string Signature() const;
};

/// Reads `Apply(source as Picture, assigns value as Integer) as Picture`, in any case, with any blanks, and with or
/// without empty parentheses. An Error says what is wrong, but not with which declaration.
MethodDeclaration ParseMethod(std::string_view text);

/// Reads `NAME = -1`, with the same Error.
ConstantInfo ParseConstant(std::string_view text);

}  // namespace ombrix::host
