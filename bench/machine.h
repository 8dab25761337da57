// What the numbers of a run depend on.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "pixels/instruction_level.h"

namespace ombrix::bench {

/// With the number of cores that can run tasks.
std::string ProcessorName();

/// With its version.
std::string CompilerName();

/// The lowest first.
std::vector<std::string> LevelNames();
std::string_view NameOf(InstructionLevel level);
std::optional<InstructionLevel> LevelNamed(std::string_view name);

}  // namespace ombrix::bench
