// A plug-in's entry.
#pragma once

#include "sdk/definition_records.h"

/// The one symbol that a plug-in exports. The host calls it once, with its resolver.
extern "C" __attribute__((visibility("default"))) void REALPluginMain(REALresolver resolver);
