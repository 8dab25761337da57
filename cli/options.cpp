#include "cli/options.h"

#include "cli/failure.h"
#include "text/names.h"
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

std::int64_t ParseBytes(const std::string& option, const std::string& word) {
    std::int64_t unit = 1;
    std::string digits = word;
    if (const std::size_t letter = digits.find_last_of("KkMmGg");
        letter != std::string::npos && letter > 0 && letter + 1 == digits.size()) {
        const char name = text::LowerCase(digits).back();
        unit = name == 'k' ? 1'000 : name == 'm' ? 1'000'000 : 1'000'000'000;
        digits.pop_back();
    }
    const auto number = text::ParseNumber<std::int64_t>(digits);
    if (number && *number > 0 && *number <= INT64_MAX / unit) return *number * unit;
    throw UsageError(option + " takes a number of bytes such as 500M or 2G, not " + text::Quoted(word));
}

double ParseSeconds(const std::string& option, const std::string& word) {
    const auto number = text::ParseNumber<double>(word);
    if (number && *number > 0) return *number;
    throw UsageError(option + " takes a number of seconds such as 10 or 0.5, not " + text::Quoted(word));
}

}  // namespace ombrix::cli
