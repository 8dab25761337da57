// Sentences of the command. Names are compared and suggested as the host does (see host/text.h).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrix::cli {

/// "a, b and c"; empty for none.
std::string Listed(const std::vector<std::string>& items);

/// All of the text on one line, without a full stop: a message is one sentence, whatever a library put into it.
std::string OnOneLine(std::string_view text);

}  // namespace ombrix::cli
