#include "cli/images/losses.h"

#include "cli/failure.h"
#include "text/phrases.h"

namespace ombrix::cli {

void Losses::Add(const std::string& note, const std::string& what) {
    if (areRefused_) {
        refused_.push_back(what);
    } else {
        console_.Note(note);
    }
}

void Losses::Check(const std::filesystem::path& file) const {
    if (refused_.empty()) return;
    throw WorkError(file.string() + " would lose " + text::Listed(refused_) + "; --force accepts that");
}

}  // namespace ombrix::cli
