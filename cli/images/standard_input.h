// An image from standard input, which "-" stands for.
#pragma once

#include <filesystem>
#include <string>

namespace ombrix::cli {

/// A word of the command line as the name of a file. For "-" it reads all of standard input first, which is then a file
/// under the name that messages give it. A UsageError when that is a terminal, a WorkError when it cannot be read.
std::filesystem::path InputFile(const std::string& word);

/// The name by which this process can open a file of such a name.
std::filesystem::path NameToOpen(const std::filesystem::path& file);

}  // namespace ombrix::cli
