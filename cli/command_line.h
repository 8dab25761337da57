// The command line, read and checked.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "cli/commands/command.h"
#include "cli/options.h"
#include "ombrix/catalogue.h"

namespace ombrix::cli {

struct CommandLine {
    Options options;
    std::vector<host::BrokenPlugin> brokenPlugins;  ///< which nobody named, so the work goes on without them
    std::unique_ptr<catalogue::Catalogue> catalogue;
    std::unique_ptr<Command> command;
};

/// Loads the plug-ins, whose effects are subcommands, and reads the command line. A UsageError when it is wrong, a
/// WorkError or a host::Error when a plug-in cannot be loaded. Nothing when it asked for help or the version, which are
/// then printed, with what could be loaded.
std::optional<CommandLine> ReadCommandLine(int count, const char* const* words, host::Host& host);

}  // namespace ombrix::cli
