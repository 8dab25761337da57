#include "catalogue/words.h"

#include <map>

#include "text/names.h"

namespace ombrix::catalogue {

namespace {

bool IsCapital(char letter) { return letter >= 'A' && letter <= 'Z'; }

bool IsSmall(char letter) { return letter >= 'a' && letter <= 'z'; }

/// FillPicture as fill_picture, CPUCoreCount as cpu_core_count.
std::string Parted(const std::string& name) {
    std::string word;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool begins = i > 0 && IsCapital(name[i]) && name[i - 1] != '_' &&
                            (!IsCapital(name[i - 1]) || (i + 1 < name.size() && IsSmall(name[i + 1])));
        if (begins) word += '_';
        word += text::LowerCase(name[i]);
    }
    return word;
}

bool BeginsWord(const std::string& name, std::size_t at) {
    return at == 0 || at == name.size() || IsCapital(name[at]) || name[at] == '_' || name[at - 1] == '_';
}

std::string WithoutEnding(const std::string& name, std::string_view ending) {
    const bool hasMore = name.size() > ending.size();
    if (!hasMore || !text::SameName(name.substr(name.size() - ending.size()), ending)) return name;
    return name.substr(0, name.size() - ending.size());
}

/// SepiaValue of SepiaEffect as Value, but Redness of RedEffect as it is.
std::string WithoutStem(const std::string& name, const std::string& stem) {
    std::string rest = WithoutEnding(name, stem);
    if (!BeginsWord(name, rest.size())) rest = name;
    if (rest == name && text::SameName(name.substr(0, stem.size()), stem) && BeginsWord(name, stem.size())) {
        rest = name.substr(stem.size());
    }
    rest.erase(0, rest.find_first_not_of('_'));
    rest.erase(rest.find_last_not_of('_') + 1);
    return text::IsName(rest) ? rest : name;
}

}  // namespace

std::string WordOf(const host::Host& host, const host::ClassInfo& type) {
    const std::string shortName = text::LowerCase(WithoutEnding(type.name, kEnding));
    return host.FindClass(shortName) ? text::LowerCase(type.name) : shortName;
}

std::vector<std::string> WordsOf(const host::ClassInfo& type, const std::vector<std::string>& properties) {
    const std::string stem = WithoutEnding(type.name, kEnding);
    // From the shortest form to the registered name, which is unique in any case.
    std::vector<std::vector<std::string>> forms;
    for (const std::string& name : properties) {
        forms.push_back({text::LowerCase(name), Parted(name), Parted(WithoutStem(name, stem))});
    }
    for (;;) {
        std::map<std::string, int> uses;
        for (const auto& form : forms) ++uses[form.back()];
        bool areUnique = true;
        for (auto& form : forms) {
            if (uses[form.back()] == 1 || form.size() == 1) continue;
            form.pop_back();
            areUnique = false;
        }
        if (areUnique) break;
    }
    std::vector<std::string> words;
    for (const auto& form : forms) words.push_back(form.back());
    return words;
}

}  // namespace ombrix::catalogue
