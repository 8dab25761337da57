// The picture that a command writes.
#pragma once

#include <filesystem>
#include <functional>

#include "cli/images/image_writer.h"
#include "cli/images/losses.h"
#include "cli/images/output_file.h"
#include "cli/session.h"

namespace ombrix::cli {

/// The picture if effects and files can take it (24 or 32 bits), or what a plug-in converts it to. A WorkError when
/// none can.
host::Picture Usable(host::Host& host, const host::Picture& picture);

/// A command's output file. Construct it before the work, to find mistakes first.
class ResultFile {
  public:
    /// A UsageError or WorkError when there can be no such file.
    ResultFile(const OutputName& output, Replace replace, const Options& options);
    /// A UsageError when an option of the writer means nothing. Call it before the work, once libvips has started.
    void CheckOptions() const { CheckWriterOptions(output_, encoding_.format); }

    /// Writes as good as a JPEG file is, with a note where its chroma takes another form. A WorkError when it is none.
    /// Call it before the work.
    void KeepQualityOf(const std::filesystem::path& file, Console& console);

    /// Writes without loss if that is how the file is compressed. Where that is not known it is assumed, with a note.
    /// Call it before the work.
    void StayLossless(const std::filesystem::path& file, Losses& losses, Console& console);

    const Encoding& HowToWrite() const { return encoding_; }
    const OutputFormat& Format() const { return encoding_.format; }

    /// The file to write into, created at once. What was written takes its place at its Commit.
    OutputFile& File() { return file_; }
    const OutputFile& File() const { return file_; }

    /// `check` is called when all is written and may throw. A vips::VError when pixels cannot be
    /// computed.
    void Write(Session& session, const vips::VImage& image, const ImageOrigin& origin,
               const std::function<void()>& check = {});
    /// A WorkError when the file cannot be written.
    void Write(Session& session, const host::Picture& picture, const ImageOrigin& origin);

  private:
    const OutputName output_;
    Encoding encoding_;
    OutputFile file_;
};

}  // namespace ombrix::cli
