// A picture's way into the output file.
#pragma once

#include <filesystem>

#include "cli/image_writer.h"
#include "cli/output_file.h"
#include "cli/session.h"

namespace ombrix::cli {

/// The picture itself when effects and files can take it (24 or 32 bits), or else what the loaded plug-ins make of it.
/// A WorkError when no plug-in can.
host::Picture Usable(Session& session, const host::Picture& picture);

/// The output file of a command. Made before the work begins, so that what can be wrong with it is found out first.
class ResultFile {
  public:
    ResultFile(const Session& session, const std::filesystem::path& target, bool mayReplace);

    /// Writes the picture and puts the file in place.
    void Write(Session& session, const host::Picture& picture, const ImageOrigin& origin);

  private:
    const OutputFormat& format_;
    OutputFile file_;
};

}  // namespace ombrix::cli
