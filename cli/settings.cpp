#include "cli/settings.h"

#include "cli/failure.h"
#include "text/names.h"

namespace ombrix::cli {

bool LooksLikeSetting(const std::string& word) {
    const std::size_t equals = word.find('=');
    return equals != std::string::npos && text::IsName(std::string_view(word).substr(0, equals));
}

void SortWords(const std::vector<std::string>& words, std::vector<Setting>& settings,
               std::vector<std::string>& others) {
    for (const std::string& word : words) {
        if (LooksLikeSetting(word)) {
            const std::size_t equals = word.find('=');
            settings.push_back({word.substr(0, equals), word.substr(equals + 1)});
        } else {
            others.push_back(word);
        }
    }
}

void RefuseEmpty(const std::string& file, const std::string& what) {
    if (file.empty()) throw UsageError("the name of " + what + " is empty; give a file");
}

void RefuseTwice(const std::vector<Setting>& settings) {
    for (const Setting& setting : settings) {
        for (const Setting& other : settings) {
            if (&other == &setting) break;
            if (text::SameName(setting.name, other.name)) {
                throw UsageError(setting.name + " is given twice, as " + other.AsGiven() + " and " + setting.AsGiven());
            }
        }
    }
}

}  // namespace ombrix::cli
