// What may come next on a command line, for the shells.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

#include "ombrix/catalogue.h"

namespace ombrix::cli {

struct Candidate {
    std::string word;   ///< in place of the one that is being typed
    std::string about;  ///< one line; may be empty
};

struct Candidates {
    std::vector<Candidate> words;
    bool files = false;  ///< names of files as well, behind the = where the word has one
};

/// What a subcommand takes after the words `given`, which are neither options nor values with a known name.
using WordsOf = std::function<Candidates(const CLI::App& command, const std::vector<std::string>& given)>;

/// `line`: the words after the program's name; the last is being typed, and may be empty. `apply` is the subcommand
/// whose first word is an effect, as each word after a --then is.
Candidates Complete(const CLI::App& program, const CLI::App& apply, const catalogue::Catalogue& catalogue,
                    const WordsOf& wordsOf, const std::vector<std::string>& line);

}  // namespace ombrix::cli
