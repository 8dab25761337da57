// Names of the host's language. Upper and lower case are the same.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::text {

/// ASCII letters, digits and underscores, not beginning with a digit.
bool IsName(std::string_view text);
bool StartsName(char letter);
bool ContinuesName(char letter);

bool SameName(std::string_view a, std::string_view b);
char LowerCase(char letter);
std::string LowerCase(std::string_view text);

/// The words that all names begin with, in any case, such as "MODE_" of MODE_HUE and MODE_COLOR. Empty for a single
/// name.
std::string CommonBeginning(const std::vector<std::string>& names);

}  // namespace ombrix::text
