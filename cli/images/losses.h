// What an image has and its result will not have.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "cli/console.h"

namespace ombrix::cli {

/// Notes what goes on the way to another file. A file that is to be changed itself is refused instead.
class Losses {
  public:
    /// `areRefused`: the result replaces the file, and the user has not accepted losses.
    Losses(Console& console, bool areRefused) : console_(console), areRefused_(areRefused) {}

    /// `note` is a sentence for a result in another file: "a.tif has 3 pages; the first is used". `what` is for the
    /// file itself: "all pages but the first".
    void Add(const std::string& note, const std::string& what);
    bool AreRefused() const { return areRefused_; }

    /// A WorkError that names all that `file` would lose, if that is refused.
    void Check(const std::filesystem::path& file) const;

  private:
    Console& console_;
    const bool areRefused_;
    std::vector<std::string> refused_;
};

}  // namespace ombrix::cli
