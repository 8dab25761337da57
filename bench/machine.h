// What the numbers of a run depend on.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/instruction_level.h"

namespace ombrix::bench {

/// The processor's name and the number of those that can run tasks.
std::string ProcessorName();

/// The compiler that this was built with, and its version.
std::string CompilerName();

/// The names of the levels, the lowest first.
std::vector<std::string> LevelNames();
std::string_view NameOf(InstructionLevel level);
std::optional<InstructionLevel> LevelNamed(std::string_view name);

}  // namespace ombrix::bench
