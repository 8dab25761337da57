// The operations of GEGL, one for each effect.
#pragma once

namespace ombrix::bridge {

/// Registers them. An Error when the effects cannot be had.
void RegisterOperations();

}  // namespace ombrix::bridge
