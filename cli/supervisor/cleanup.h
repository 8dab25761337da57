// What must not stay behind when the process ends, whatever ends it.
#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>

namespace ombrix::cli {

/// A file that is removed when a signal ends the process, for as long as the object lives. Does nothing else: whoever
/// makes the file removes or keeps it.
class RemovedOnSignals {
  public:
    /// Before the file is made, so that no signal can miss it. A std::length_error when the name is too long.
    explicit RemovedOnSignals(const std::filesystem::path& file);
    ~RemovedOnSignals();
    RemovedOnSignals(const RemovedOnSignals&) = delete;
    RemovedOnSignals& operator=(const RemovedOnSignals&) = delete;

  private:
    std::size_t place_ = 0;
};

/// A private folder for the temporary files of libraries, and all files in it. A worker makes it, and whichever of the
/// worker and its supervisor ends last takes it away.
class TemporaryFolder {
  public:
    /// The supervisor's, before it starts the worker. Makes nothing yet. A std::bad_alloc when memory is short.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    /// Makes it in TMPDIR or /tmp. Empty when none can be made there; libraries that need one say so.
    std::filesystem::path Make() const;
};

/// The process to kill when a signal ends this one; 0 for none.
void KillOnSignals(pid_t child);

/// Sent to a worker whose supervisor has died.
int SupervisorDiedSignal();

/// Makes signals that end the process clean up first, and makes the limit on file sizes an ordinary write error. Call
/// once, at start.
void CleanUpOnSignals();

}  // namespace ombrix::cli
