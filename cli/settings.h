// NAME=VALUE words of the command line.
#pragma once

#include <string>
#include <vector>

namespace ombrix::cli {

struct Setting {
    std::string name;
    std::string text;

    std::string AsGiven() const { return name + "=" + text; }
};

/// Whether a name stands before the "=".
bool LooksLikeSetting(const std::string& word);

/// Sorts the words into settings and others: files, and values without a name.
void SortWords(const std::vector<std::string>& words, std::vector<Setting>& settings, std::vector<std::string>& others);

/// A UsageError when the name of a file is empty. `what` is "INPUT", for example.
void RefuseEmpty(const std::string& file, const std::string& what);

void RefuseTwice(const std::vector<Setting>& settings);

}  // namespace ombrix::cli
