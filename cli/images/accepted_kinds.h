// The kinds of image files that are read, known by their own first bytes.
#pragma once

#include <filesystem>
#include <vips/vips8>

#include "cli/console.h"
#include "cli/images/pages.h"

namespace ombrix::cli {

/// How this process reads files.
struct ReadingRules {
    bool allKinds = false;  ///< every reader of libvips, by its own recognition
    bool damaged = false;   ///< takes what can be read of a damaged file
};

/// Blocks all of libvips' readers that are not made for files from strangers, unless all kinds are asked for. Call
/// once, when libvips has started.
void AcceptKinds(const ReadingRules& rules);

/// Opens an image by its first bytes, whatever its name. Reads the header; pixels are decoded later, and errors in them
/// come then. A damaged file is taken, with a note, if the rules say so; without a console there is no note.
///
/// A WorkError when the file is of no accepted kind, or is known to be cut short where its reader would not notice. A
/// vips::VError when libvips cannot open it.
vips::VImage OpenAccepted(const std::filesystem::path& file, VipsAccess access, const Pages& pages, Console* console);

}  // namespace ombrix::cli
