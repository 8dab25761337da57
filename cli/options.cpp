#include "cli/options.h"

#include "cli/failure.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::cli {

std::int64_t ParseCount(const std::string& option, const std::string& word, std::int64_t low, std::int64_t high) {
    const auto number = text::ParseNumber<std::int64_t>(word);
    if (number && *number >= low && *number <= high) return *number;
    const std::string range =
        std::to_string(low) + (high == INT64_MAX ? std::string(" up") : " to " + std::to_string(high));
    throw UsageError(option + " takes a whole number from " + range + ", not " + text::Quoted(word));
}

}  // namespace ombrix::cli
