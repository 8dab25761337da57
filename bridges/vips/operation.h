// The operations of libvips, one for each effect.
#pragma once

namespace ombrix::bridge {

/// Registers them. A bridge::Error when the effects cannot be had.
void RegisterOperations();

}  // namespace ombrix::bridge
