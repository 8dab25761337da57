// The child's side of the supervised work.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>

#include "cli/session.h"
#include "cli/supervisor/cleanup.h"

namespace ombrix::cli {

/// The ends of pipes that a worker is given.
struct WorkerPipes {
    int messages;
    int chatter;  ///< for what libraries print
};

/// Works, tells the supervisor what came of it, and ends the process without the parent's destructors.
[[noreturn]] void RunWorker(Session& session, const std::function<void(Session&)>& work, WorkerPipes pipes,
                            pid_t supervisor, const TemporaryFolder& temporary);

/// Says that a file is read, on whose size the limits depend: before the work begins if it is known by then, otherwise
/// before the file is opened. A file counts once.
void WillRead(const std::filesystem::path& file);

}  // namespace ombrix::cli
