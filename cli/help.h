// The help texts: examples first, then the order of the words, then the options.
#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>

namespace ombrix::cli {

/// What is shown about a command, or about the program as a whole.
struct HelpText {
    const char* about;  ///< what it is for, and examples
    const char* usage;  ///< the order of the words
};

extern const HelpText kProgramHelp;
extern const HelpText kApplyHelp;
extern const HelpText kCallHelp;
extern const HelpText kListHelp;
extern const HelpText kGalleryHelp;

/// Lays out the help of a command; the help of one that belongs to another shows that one's options too.
std::shared_ptr<CLI::Formatter> HelpLayout(const HelpText& text);

}  // namespace ombrix::cli
