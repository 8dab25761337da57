// Checks the encoding of texts.
#pragma once

#include <string_view>

namespace ombrix::text {

/// Well-formed UTF-8, as the Unicode standard defines it.
bool IsUtf8(std::string_view bytes);

}  // namespace ombrix::text
