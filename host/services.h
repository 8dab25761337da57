// What plug-ins ask the host for.
#pragma once

namespace ombrix::host {

/// The resolver for plug-ins: a service's entry by name; null for unknown and withheld ones.
void* Resolve(const char* name) noexcept;

}  // namespace ombrix::host
