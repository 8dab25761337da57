// What to type instead of an unknown name.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::text {

/// The most similar name; empty when none is similar.
std::string NearestName(std::string_view name, const std::vector<std::string>& names);

/// `; did you mean "Red"?`, or else `; there are: Red, Green` or `; there are none`.
std::string Suggestion(std::string_view name, const std::vector<std::string>& names);

}  // namespace ombrix::text
