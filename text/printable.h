// Texts from outside, safe to show on a terminal.
#pragma once

#include <string>
#include <string_view>

namespace ombrix::text {

/// The text with control characters, characters that change the direction of writing, and bytes that are not UTF-8
/// as \x1b.
std::string Printable(std::string_view text);

}  // namespace ombrix::text
