// Options of every command.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace ombrix::cli {

struct Options {
    std::string program = "ombrix";              ///< as started, for command lines to copy
    std::vector<std::filesystem::path> plugins;  ///< in addition to the standard one, in this order
    bool quiet = false;
    bool force = false;
    std::optional<std::int64_t> cores;  ///< 0: the effect chooses; -1: all
    std::optional<int> quality;         ///< 1 to 100
    std::int64_t maxPixels = 1'000'000'000;
};

/// Reads a whole number from `low` to `high`; INT64_MAX is no limit. A UsageError names the option.
std::int64_t ParseCount(const std::string& option, const std::string& word, std::int64_t low, std::int64_t high);

}  // namespace ombrix::cli
