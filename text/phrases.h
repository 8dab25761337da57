// Pieces of sentences.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::text {

/// "Red", in quotation marks.
std::string Quoted(std::string_view text);
/// "a Picture", "an Item"
std::string WithArticle(std::string_view name);

/// "a, b, c"
std::string Join(const std::vector<std::string>& parts, std::string_view separator = ", ");
/// "a, b and c"
std::string Listed(const std::vector<std::string>& parts);

/// The text on one line and without a full stop, to be part of a message.
std::string OnOneLine(std::string_view text);

}  // namespace ombrix::text
