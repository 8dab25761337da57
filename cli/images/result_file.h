// The picture that a command writes.
#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include "cli/images/image_writer.h"
#include "cli/images/output_file.h"
#include "cli/session.h"

namespace ombrix::cli {

/// The picture if effects and files can take it (24 or 32 bits), or what a plug-in converts it to. A WorkError when
/// none can.
host::Picture Usable(host::Host& host, const host::Picture& picture);

/// A command's output file. Construct it before the work, to find mistakes first.
class ResultFile {
  public:
    /// A UsageError or WorkError when there can be no such file. The quality is 1 to 100.
    ResultFile(const std::filesystem::path& target, Replace replace, std::optional<int> quality);

    /// The file to write into, created at once. What was written takes its place at its Commit.
    OutputFile& File() { return file_; }
    const OutputFile& File() const { return file_; }

    const OutputFormat& Format() const { return format_; }

    /// `check` is called when all is written and may throw. A vips::VError when pixels cannot be
    /// computed.
    void Write(Session& session, const vips::VImage& image, const ImageOrigin& origin,
               const std::function<void()>& check = {});
    /// A WorkError when the file cannot be written.
    void Write(Session& session, const host::Picture& picture, const ImageOrigin& origin);

  private:
    const OutputFormat& format_;
    const std::optional<int> quality_;
    OutputFile file_;
};

}  // namespace ombrix::cli
