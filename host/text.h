// Names and sentences: comparing names as the host's language does, and putting together what an Error says.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::host {

/// Names are the same in any case (of ASCII letters).
bool SameName(std::string_view a, std::string_view b);
std::string LowerCase(std::string_view text);

/// `Quoted("Red")` is `"Red"`, with the quotation marks.
std::string Quoted(std::string_view text);
/// `a Picture`, `an Item`
std::string WithArticle(std::string_view name);
std::string Join(const std::vector<std::string>& parts, std::string_view separator = ", ");

/// The one of `names` that is most like `name`, or an empty string when none is like it.
std::string NearestName(std::string_view name, const std::vector<std::string>& names);

/// `; did you mean "Red"?` when a name is near, and otherwise `; there are: Red, Green` or `; there are none`.
std::string Suggestion(std::string_view name, const std::vector<std::string>& names);

}  // namespace ombrix::host
