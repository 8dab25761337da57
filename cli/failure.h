// How the command fails: with a sentence that names the thing and says what would work.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>

namespace ombrix::cli {

/// The command line is wrong, and nothing has been read or written. Exit status 2.
class UsageError : public std::runtime_error {
  public:
    explicit UsageError(const std::string& sentence, std::string usage = {})
        : std::runtime_error(sentence), usage_(std::move(usage)) {}

    /// Lines that show how the command is used; empty when they would not help.
    const std::string& Usage() const { return usage_; }

  private:
    std::string usage_;
};

/// The work failed, and all files are as they were. Exit status 1.
class WorkError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

}  // namespace ombrix::cli
