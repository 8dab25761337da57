// Loads plug-ins.
#pragma once

#include <filesystem>
#include <vector>

#include "ombrix/host.h"

namespace ombrix::cli {

/// Loads the standard plug-in, from beside the command or from an installation's library folder, then `plugins`. A
/// WorkError or a host::Error when one cannot be loaded.
void LoadPlugins(host::Host& host, const std::vector<std::filesystem::path>& plugins);

}  // namespace ombrix::cli
