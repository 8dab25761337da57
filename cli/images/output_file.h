// Files that are written whole or not at all.
#pragma once

#include <cstddef>
#include <filesystem>

namespace ombrix::cli {

/// Per process.
inline constexpr std::size_t kUnfinishedAtOnce = 2;

/// Writes beside the target and renames at Commit, so the target is always the old file or the finished one. If the
/// scope or the process ends without Commit, even by an interrupt, no trace is left.
class OutputFile {
  public:
    /// Creates nothing yet. A WorkError when the folder cannot be written to, or the target exists and may not be
    /// replaced.
    OutputFile(std::filesystem::path target, bool mayReplace);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Creates an empty file beside the target and returns its name, which has the target's suffix.
    const std::filesystem::path& Create();
    /// Puts the written file in the target's place, with the permissions of the file that it replaces.
    void Commit();

    const std::filesystem::path& Target() const { return given_; }

  private:
    const std::filesystem::path given_;   // for messages
    const std::filesystem::path target_;  // links followed
    const bool mayReplace_;
    std::filesystem::path temporary_;  // empty before Create
    std::size_t place_ = 0;            // in the list of unfinished files
};

/// A UsageError when both are the same file, under whatever names.
void RefuseSameFile(const std::filesystem::path& read, const std::filesystem::path& written);

/// Makes signals that end the process remove unfinished files first, and makes the limit on file sizes an ordinary
/// write error. Call once, at start.
void RemoveUnfinishedFileOnSignals();

}  // namespace ombrix::cli
