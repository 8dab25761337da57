// Calls functions whose parameters are known from a declaration only.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "frame/definition_records.h"
#include "host/declaration.h"

namespace ombrix::host {

/// A value as it is passed to plug-ins; which member counts is told by its Kind.
union Word {
    std::int64_t integer = 0;
    std::uint8_t boolean;
    double real;
    REALobjectStruct* object;
};

struct TypedWord {
    Kind kind;
    Word word;
};

/// Calls the function with these arguments. The result is 0 when there is none.
Word Invoke(REALproc function, std::span<TypedWord> arguments, std::optional<Kind> result);

}  // namespace ombrix::host
