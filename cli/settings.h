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

/// Whether a name stands before the "=". All other words are files.
bool LooksLikeSetting(const std::string& word);

/// Sorts the words into settings and files.
void SortWords(const std::vector<std::string>& words, std::vector<Setting>& settings, std::vector<std::string>& files);

void RefuseTwice(const std::vector<Setting>& settings);

}  // namespace ombrix::cli
