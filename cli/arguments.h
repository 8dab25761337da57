// The command line, taken apart. Nothing here knows of effects: names and values are still texts.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace ombrix::cli {

/// One NAME=VALUE of the command line.
struct Setting {
    std::string name;
    std::string text;

    std::string AsGiven() const { return name + "=" + text; }
};

/// One effect of a chain.
struct Step {
    std::string effect;
    std::vector<Setting> settings;
    std::optional<std::string> mask;  ///< an image file
};

struct ApplyCommand {
    std::vector<Step> steps;  ///< at least one
    std::filesystem::path input;
    std::filesystem::path output;  ///< the input itself when in place
    bool inPlace = false;
};

struct CallCommand {
    std::string owner;  ///< a class or a module
    std::string method;
    std::vector<Setting> arguments;
    std::optional<std::filesystem::path> output;
};

struct ListCommand {
    std::optional<std::string> name;  ///< a class or a module; all when empty
};

struct GalleryCommand {
    std::string program;  ///< as it was started, for command lines that people can copy
    std::filesystem::path input;
    std::optional<std::filesystem::path> fill, mask;   ///< image files
    std::optional<std::filesystem::path> page, sheet;  ///< what to write
    int size = 1120;                                   ///< pixels of the longer side of the pictures in the page
};

/// Options that every command takes.
struct Options {
    std::vector<std::filesystem::path> plugins;  ///< loaded after the standard one, in this order
    bool quiet = false;
    bool force = false;
    std::optional<std::int64_t> cores;  ///< 0 leaves the choice to the effect, -1 is all
    std::optional<int> quality;         ///< 1 to 100
    std::int64_t maxPixels = 1'000'000'000;
};

struct Arguments {
    Options options;
    std::variant<ApplyCommand, CallCommand, ListCommand, GalleryCommand> command;
};

/// A UsageError when the command line is wrong; nothing when it asked for help or the version, which are then printed.
std::optional<Arguments> ParseArguments(int count, const char* const* words);

}  // namespace ombrix::cli
