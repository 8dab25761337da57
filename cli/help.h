// Help texts: examples first, then the usage, then the options.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

namespace ombrix::cli {

/// Of a command, or of the program.
struct HelpText {
    const char* about;  ///< purpose and examples
    const char* usage;
};

/// Lays out the help. A command's shows the program's options too.
std::shared_ptr<CLI::Formatter> HelpLayout(const HelpText& text);

}  // namespace ombrix::cli
