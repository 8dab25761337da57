// Command lines as one types them into a shell.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::cli {

/// The word so that a shell takes it as it is: in quotation marks where it needs them.
std::string ShellWord(std::string_view word);
/// The words with blanks between them, each one safe.
std::string ShellLine(const std::vector<std::string>& words);

}  // namespace ombrix::cli
