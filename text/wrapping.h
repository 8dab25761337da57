// Texts in lines of a width.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ombrix::text {

/// The text in lines of at most `width` characters, as far as its words allow. Further lines begin with `indent`
/// blanks. No line break at the end.
std::string Wrapped(std::string_view text, std::size_t width, std::size_t indent = 0);

/// Wraps a text of paragraphs. Lines that begin with a blank stay lines of their own, and are broken only where they
/// are too long; command lines, which begin with "  ombrix ", so that they can be copied unless they have
/// [placeholders].
std::string WrappedParagraphs(std::string_view text, std::size_t width);

}  // namespace ombrix::text
