// The short words by which people and programs name effects and their properties.
#pragma once

#include <string>
#include <vector>

#include "ombrix/host.h"

namespace ombrix::catalogue {

/// The ending of effects' classes that people may leave out.
inline constexpr std::string_view kEnding = "Effect";

/// The class in small letters, without its ending where no other class has that name.
std::string WordOf(const host::Host& host, const host::ClassInfo& type);

/// A word for each of a class's properties: its name without that of the class at either end, with "_" between its
/// words, or as much of the name as it takes to be unique among them.
std::vector<std::string> WordsOf(const host::ClassInfo& type, const std::vector<std::string>& properties);

}  // namespace ombrix::catalogue
