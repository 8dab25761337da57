// Texts of the command line as values of the types that the registered records declare, and back.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/arguments.h"
#include "host/host.h"

namespace ombrix::cli {

/// A picture that is still in its file: it is read when its turn comes, not while the command line is checked.
struct ImageFile {
    std::filesystem::path path;
};

using TypedValue = std::variant<host::Value, ImageFile>;

/// Whether a value of the type can be given on a command line.
bool CanBeTyped(std::string_view type);

/// The value that the setting's text stands for: an Integer in digits or as the name of one of `constants`, a Boolean,
/// a Double, a Point as x,y, a Picture as a file name, nothing for nil. A UsageError, which calls the receiver
/// `receiver`, says what would work when the text is not of the type.
TypedValue ParseValue(host::Host& host, const Setting& setting, std::string_view type,
                      const std::vector<host::ConstantInfo>& constants, const std::string& receiver);

/// A value as one would type it, for printing. Objects other than points are shown by the name of their class.
std::string Shown(const host::Value& value);

}  // namespace ombrix::cli
