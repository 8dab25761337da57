// What every command works with: the host with its plug-ins, the options and standard error.
#pragma once

#include "cli/arguments.h"
#include "cli/console.h"
#include "host/host.h"

namespace ombrix::cli {

struct Session {
    host::Host& host;
    const Options& options;
    Console& console;
};

/// Loads the standard plug-in, which lies next to the command or in the library folder of an installation, and then
/// those of the options. A WorkError when one cannot be loaded.
void LoadPlugins(host::Host& host, const Options& options);

void Apply(Session& session, const ApplyCommand& command);
void Call(Session& session, const CallCommand& command);
void List(Session& session, const ListCommand& command);
void Gallery(Session& session, const GalleryCommand& command);

}  // namespace ombrix::cli
