// How the command fails: with a sentence that names the thing and says what would work.
#pragma once

#include <stdexcept>

namespace ombrix::cli {

/// The command line is wrong, and nothing has been read or written. Exit status 2.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The work failed, and all files are as they were. Exit status 1.
class WorkError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace ombrix::cli
