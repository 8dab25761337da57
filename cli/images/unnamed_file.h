// Files for what has no name: standard input and output.
#pragma once

namespace ombrix::cli {

/// A new file, open for reading and writing, that goes with its descriptor: on the disk for temporary files, or in
/// memory where that takes none. A WorkError when there can be none.
int MakeUnnamedFile();

/// Copies all that is left. A std::system_error when bytes cannot be read or written.
void CopyAll(int from, int to);

}  // namespace ombrix::cli
