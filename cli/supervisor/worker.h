// The child's side of the supervised work.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <functional>

#include "cli/session.h"

namespace ombrix::cli {

/// The ends of pipes that a worker is given.
struct WorkerPipes {
    int messages;
    int chatter;  ///< for what libraries print
};

/// Works, tells the supervisor what came of it, and ends the process without the parent's destructors.
[[noreturn]] void RunWorker(Session& session, const std::function<void(Session&)>& work, WorkerPipes pipes,
                            pid_t supervisor, const std::filesystem::path& temporaryFolder);

/// Tells the supervisor that a file is read, on which its limits depend. Call it before each file is opened; once
/// counts.
void WillRead(const std::filesystem::path& file);

}  // namespace ombrix::cli
