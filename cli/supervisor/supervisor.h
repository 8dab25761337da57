// The work on pictures in a process of its own, since decoders crash, hang and grow whatever care is taken.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/session.h"

namespace ombrix::cli {

/// A file that the work writes.
struct WatchedFile {
    int descriptor;
    std::string name;  ///< for messages
};

struct SupervisedWork {
    std::vector<WatchedFile> written;  ///< watched for a full disk
    int pictures = 1;                  ///< about how many are made; each has the time that the limit allows
};

/// Runs `work` in a worker process, with a session whose console speaks to this one's, and waits. What the work leaves
/// in memory is lost; what it writes to standard output comes out here, when it succeeds.
///
/// The work's UsageError or WorkError is thrown here. Whatever else becomes of the worker is a WorkError that names
/// what is to blame: the file being read, the effect, the disk, memory or time. Lines that libraries print are kept
/// back. Call it once, before any thread is started.
void Supervise(Session& session, const SupervisedWork& supervised, const std::function<void(Session&)>& work);

}  // namespace ombrix::cli
