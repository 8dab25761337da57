// Files that are written whole or not at all.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "cli/supervisor/cleanup.h"

namespace ombrix::cli {

/// Which existing files an output may replace.
enum class Replace {
    Nothing,
    Writable,  ///< what the user may write to
    Anything,  ///< a read-only file of the user's own, too
};

/// Writes to a file without a name in the target's folder, or with one where the system has no others, and puts it in
/// the target's place at Commit: the target is always the old file or the finished one. If the scope or the process
/// ends without Commit, no trace is left. All is done by descriptors of the file and its folder, so that no name that
/// is changed meanwhile leads elsewhere.
///
/// A file that is replaced passes on owner, group and permissions, as far as the user may give them away, but never a
/// set-user or set-group bit. A link is followed, and stays; one that leads nowhere is itself replaced. Other hard
/// links of a replaced file keep the old contents.
class OutputFile {
  public:
    /// Creates nothing yet. A WorkError when the folder cannot be written to, or the target exists and may not be
    /// replaced.
    OutputFile(std::filesystem::path target, Replace replace);
    /// For standard output, to which the finished file is copied at Commit. A UsageError when that is a terminal.
    static OutputFile ToStandardOutput() { return OutputFile(); }
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    /// Creates the empty file. A WorkError when the folder takes none.
    void Create();
    /// Open for reading and writing once created. The object keeps it.
    int Descriptor() const { return file_; }
    /// For writers that take names only: a name of the descriptor in this process.
    std::filesystem::path NameOfDescriptor() const;

    /// For what is no image. A WorkError when the disk is full.
    void Write(std::string_view bytes);

    /// Puts the written file in the target's place. A WorkError leaves all as it was.
    void Commit();

    const std::filesystem::path& Target() const { return given_; }

  private:
    OutputFile();
    std::filesystem::path BesideTarget() const;
    void TakeOverAttributes() const;
    void PutInPlace();
    void CopyOut() const;

    const std::filesystem::path given_;   // for messages
    const std::filesystem::path target_;  // links followed
    const Replace replace_;
    const bool isCopied_ = false;  // to standard output
    int folder_ = -1;
    int file_ = -1;
    std::string name_;  // in the folder; empty when there is none
    std::optional<RemovedOnSignals> removed_;
};

/// A UsageError when both are the same file, under whatever names.
void RefuseSameFile(const std::filesystem::path& read, const std::filesystem::path& written);

}  // namespace ombrix::cli
