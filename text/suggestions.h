// What to type instead of an unknown name.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace ombrix::text {

/// The most similar name; empty when none is similar.
std::string NearestName(std::string_view name, const std::vector<std::string>& names);

/// The most similar names, the nearest first, at most `most`; empty when none is similar.
std::vector<std::string> NearestNames(std::string_view name, const std::vector<std::string>& names, std::size_t most);

/// `; did you mean "Red"?`, or else `; there are: Red, Green` or `; there are none`.
std::string Suggestion(std::string_view name, const std::vector<std::string>& names);

}  // namespace ombrix::text
