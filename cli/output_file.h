// A file that comes into being whole or not at all.
#pragma once

#include <cstddef>
#include <filesystem>

namespace ombrix::cli {

/// How many files of the process can be unfinished at the same time.
inline constexpr std::size_t kUnfinishedAtOnce = 2;

/// Writes beside the target and renames when all is well, so that the target is at every moment what it was before
/// or the finished file. Without Commit, whatever ends the scope or the process (a failure, an interrupt), no file
/// is left behind and the target is as it was.
class OutputFile {
  public:
    /// Checks what can be checked before the work: a WorkError when the target's folder is not there or not writable,
    /// or when the target exists and may not be replaced. Creates nothing yet.
    OutputFile(std::filesystem::path target, bool mayReplace);
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Creates the file beside the target, empty, and returns its name. It ends like the target's name.
    const std::filesystem::path& Create();
    /// Puts the written file in the target's place. A replaced file's permissions are kept.
    void Commit();

    const std::filesystem::path& Target() const { return given_; }

  private:
    const std::filesystem::path given_;   // for messages
    const std::filesystem::path target_;  // where the file really lies
    const bool mayReplace_;
    std::filesystem::path temporary_;  // empty while there is none
    std::size_t place_ = 0;            // of the temporary file among the unfinished ones
};

/// A UsageError when the file that is to be written is one that is read, under whatever name.
void RefuseSameFile(const std::filesystem::path& read, const std::filesystem::path& written);

/// Makes interrupts (from the keyboard, a hang-up, a request to end) remove the file that is being written before they
/// end the process as usual. A file that grows over the limit becomes an ordinary write error. Call once at start.
void RemoveUnfinishedFileOnSignals();

}  // namespace ombrix::cli
