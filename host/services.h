// What plug-ins can ask the host for.
#pragma once

namespace ombrix::host {

/// The resolver that plug-ins get: the entry of a service by its name, null when the host has none, or is not to have.
void* Resolve(const char* name) noexcept;

}  // namespace ombrix::host
