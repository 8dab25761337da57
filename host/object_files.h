// The files that code of this process was loaded from.
#pragma once

#include <filesystem>

namespace ombrix::host {

/// The shared object, or the program, that a function belongs to; empty when the system does not say.
std::filesystem::path ObjectFileOf(void* function);

}  // namespace ombrix::host
