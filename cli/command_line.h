// The command line, read and checked.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cli/commands/command.h"
#include "cli/options.h"

namespace ombrix::cli {

struct CommandLine {
    Options options;
    std::unique_ptr<Command> command;
};

/// A UsageError when the command line is wrong. Nothing when it asked for help or the version, which are then printed.
std::optional<CommandLine> ReadCommandLine(int count, const char* const* words);

}  // namespace ombrix::cli
