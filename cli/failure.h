// The two ways in which the command fails. Each carries one sentence that names the thing and says what would work.
#pragma once

#include <stdexcept>

namespace ombrix::cli {

/// The command line is wrong: exit status 2. Nothing has been read or written yet.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The work failed: exit status 1. No file is left behind and nothing existing is changed.
class WorkError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace ombrix::cli
