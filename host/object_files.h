// The files that code of this process was loaded from.
#pragma once

#include <filesystem>
#include <vector>

#include "ombrix/api.h"

namespace ombrix::host {

/// The shared object, or the program, that a function belongs to; empty when the system does not say.
std::filesystem::path ObjectFileOf(void* function);

/// The folders of the program, of the host's library and of the platform's, where files that belong to them lie.
OMBRIX_API std::vector<std::filesystem::path> OwnFolders();

}  // namespace ombrix::host
