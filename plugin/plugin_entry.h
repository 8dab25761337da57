// The start of the plug-in.
#pragma once

#include "sdk/definition_records.h"

namespace ombrix {

/// Sets the process-wide state and registers modules and classes, unless the host is too old.
void PluginEntry();

/// Change a record's flags before it is registered. Web-only is for classes to come: none here is.
void SetClassConsoleSafe(REALclassDefinition* record);
void SetClassWebOnly(REALclassDefinition* record);

}  // namespace ombrix
