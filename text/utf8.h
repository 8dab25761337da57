// Checks the encoding of texts.
#pragma once

#include <cstddef>
#include <string_view>

namespace ombrix::text {

/// Length of the first sequence of `bytes`; 0 when it is malformed. `bytes` is not empty.
std::size_t SequenceLength(std::string_view bytes);

/// Well-formed UTF-8, as the Unicode standard defines it.
bool IsUtf8(std::string_view bytes);

}  // namespace ombrix::text
