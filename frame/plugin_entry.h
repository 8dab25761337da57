// How the plug-in starts.
#pragma once

#include "frame/definition_records.h"

namespace ombrix {

/// Sets the process-wide state and registers all modules and classes, unless the host is too old.
void PluginEntry();

/// Change the flags of a class record before it is registered.
void SetClassConsoleSafe(REALclassDefinition* record);
void SetClassWebOnly(REALclassDefinition* record);

}  // namespace ombrix

#define OMBRIX_EXPORT __attribute__((visibility("default")))

/// The one symbol that the plug-in exports: the host calls it once, with its resolver.
extern "C" OMBRIX_EXPORT void REALPluginMain(REALresolver resolver);
