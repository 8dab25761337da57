// Loads plug-ins.
#pragma once

#include <filesystem>
#include <vector>

#include "ombrix/host.h"

namespace ombrix::cli {

/// Loads all that are installed, then `plugins`. Returns those installed ones that are broken. A WorkError or a
/// host::Error when one of the others cannot be loaded.
std::vector<host::BrokenPlugin> LoadPlugins(host::Host& host, const std::vector<std::filesystem::path>& plugins);

}  // namespace ombrix::cli
