// Command lines for people to copy.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::text {

/// The word, quoted where a shell needs it.
std::string ShellWord(std::string_view word);
/// The quoted words.
std::string ShellLine(const std::vector<std::string>& words);

}  // namespace ombrix::text
