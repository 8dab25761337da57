// Declarations in the host's language, as plug-ins write them into their method and constant rows.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/reflection.h"

namespace ombrix::host {

/// How a value of a type is passed and stored. Every type that is not one of the first three is a reference.
enum class Kind { Integer, Boolean, Double, Object };

Kind KindOf(std::string_view type);
/// Bytes of a stored value.
std::size_t SizeOf(Kind kind);

struct MethodDeclaration {
    std::string name;
    std::vector<ParameterInfo> parameters;
    bool assigns = false;  ///< the last parameter is what is assigned, as in `picture.Mask = newMask`
    std::optional<std::string> resultType;

    /// The name and the parameters' types, in lower case: what two methods of a class must not have in common.
    std::string ParameterSignature() const;
    /// That, and the type of the result: what a plug-in asks for when it looks a method up.
    std::string Signature() const;
};

/// `Apply(source as Picture, assigns value as Integer) as Picture`, with any blanks and in any case. Without
/// parameters the parentheses may be left out. An Error that says what is wrong with the text, without naming it.
MethodDeclaration ParseMethod(std::string_view text);

/// `NAME = -1`, with any blanks. The same Error.
ConstantInfo ParseConstant(std::string_view text);

/// Whether the text is a name of the host's language: letters, digits and underscores, not beginning with a digit.
bool IsName(std::string_view text);

}  // namespace ombrix::host
