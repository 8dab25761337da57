// Names of the host's language. Upper and lower case are the same.
#pragma once

#include <string>
#include <string_view>

namespace ombrix::text {

/// ASCII letters, digits and underscores, not beginning with a digit.
bool IsName(std::string_view text);
bool StartsName(char letter);
bool ContinuesName(char letter);

bool SameName(std::string_view a, std::string_view b);
char LowerCase(char letter);
std::string LowerCase(std::string_view text);

}  // namespace ombrix::text
