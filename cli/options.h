// Options of every command.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "cli/supervisor/limits.h"

namespace ombrix::cli {

struct Options {
    std::string program = "ombrix";              ///< as started, for command lines to copy
    std::vector<std::filesystem::path> plugins;  ///< in addition to the standard one, in this order
    bool quiet = false;
    bool force = false;
    std::optional<std::int64_t> cores;  ///< 0: the effect chooses; -1: all
    std::optional<int> quality;         ///< 1 to 100
    bool keepQuality = false;           ///< as good as the JPEG file that is read
    std::string format;                 ///< of the output; empty: by its suffix
    bool strip = false;                 ///< write no metadata
    std::int64_t maxPixels = 0;         ///< 0: by the size of the file, see PixelLimit
    Limits limits;
    bool allLoaders = false;    ///< read kinds of files beyond the accepted ones
    bool allowDamaged = false;  ///< take what can be read of a damaged file
};

/// Reads a whole number from `low` to `high`; INT64_MAX is no limit. A UsageError names the option.
std::int64_t ParseCount(const std::string& option, const std::string& word, std::int64_t low, std::int64_t high);

/// Reads a number of bytes with K, M or G for powers of 1000. A UsageError names the option.
std::int64_t ParseBytes(const std::string& option, const std::string& word);

/// Reads a number of seconds above 0. A UsageError names the option.
double ParseSeconds(const std::string& option, const std::string& word);

}  // namespace ombrix::cli
