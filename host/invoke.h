// Calls functions by their declarations.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "host/declaration.h"
#include "sdk/definition_records.h"

namespace ombrix::host {

/// A value as plug-ins take it; its Kind tells which member counts.
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

/// 0 when the function has no result.
Word Invoke(REALproc function, std::span<TypedWord> arguments, std::optional<Kind> result);

}  // namespace ombrix::host
