// Help texts: examples first, then the usage, then the options.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace ombrix::cli {

/// A name, and what it means.
using HelpRow = std::pair<std::string, std::string>;

/// Of a command, or of the program.
struct HelpText {
    std::string about;                               ///< purpose and examples
    std::string usage;                               ///< lines that begin with two blanks
    std::function<std::vector<HelpRow>()> values{};  ///< of an effect, found by trying; shown with the whole help alone
};

/// Made when it is shown.
using MakeHelp = std::function<HelpText()>;

/// Lays out the help for standard output. A command's shows the program's options too.
std::shared_ptr<CLI::Formatter> HelpLayout(MakeHelp help);

/// "Usage:" and the lines, for standard error.
std::string ShownUsage(const HelpText& help);

}  // namespace ombrix::cli
