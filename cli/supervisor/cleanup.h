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

/// A private folder for the temporary files of libraries. Goes with the object or the process, and all files in it.
class TemporaryFolder {
  public:
    /// In TMPDIR or /tmp. Path() is empty when none can be made there; libraries that need one say so.
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& Path() const { return path_; }

  private:
    std::filesystem::path path_;
};

/// The process to kill when a signal ends this one; 0 for none.
void KillOnSignals(pid_t child);

/// Sent to a worker whose supervisor has died.
int SupervisorDiedSignal();

/// Makes signals that end the process clean up first, and makes the limit on file sizes an ordinary write error. Call
/// once, at start.
void CleanUpOnSignals();

}  // namespace ombrix::cli
