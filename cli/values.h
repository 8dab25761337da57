// Values as they are typed.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "cli/settings.h"
#include "ombrix/catalogue.h"

namespace ombrix::cli {

/// A picture that is not read before its turn.
struct ImageFile {
    std::filesystem::path path;
};

using TypedValue = std::variant<host::Value, ImageFile>;

/// Whether a command line can give a value of this type.
bool CanBeTyped(std::string_view type);

/// The typed value: an Integer in digits or as the name of a constant, in any case and with or without what all of
/// them begin with; a Boolean, a Double (50% is 0.5), a Point as x,y, a Picture as a file name. An empty text is a nil
/// object. A UsageError says what `receiver` takes.
TypedValue ParseValue(host::Host& host, const Setting& setting, std::string_view type,
                      const std::vector<catalogue::Constant>& constants, const std::string& receiver);

/// As it would be typed; other objects by the name of their class.
std::string Shown(const host::Value& value);

}  // namespace ombrix::cli
