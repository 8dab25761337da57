// Loads plug-ins.
#pragma once

#include "cli/options.h"
#include "ombrix/host.h"

namespace ombrix::cli {

/// Loads the standard plug-in, from beside the command or from an installation's library folder, then those of the
/// options. A WorkError or a host::Error when one cannot be loaded.
void LoadPlugins(host::Host& host, const Options& options);

}  // namespace ombrix::cli
