#include "text/names.h"

#include <algorithm>

namespace ombrix::text {

bool StartsName(char letter) {
    return (letter >= 'a' && letter <= 'z') || (letter >= 'A' && letter <= 'Z') || letter == '_';
}

bool ContinuesName(char letter) { return StartsName(letter) || (letter >= '0' && letter <= '9'); }

bool IsName(std::string_view text) {
    return !text.empty() && StartsName(text.front()) && std::ranges::all_of(text, ContinuesName);
}

char LowerCase(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

std::string LowerCase(std::string_view text) {
    std::string result(text);
    for (char& letter : result) letter = LowerCase(letter);
    return result;
}

bool SameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

std::string CommonBeginning(const std::vector<std::string>& names) {
    if (names.size() < 2) return "";
    std::string_view common = names.front();
    for (const std::string& name : names) {
        const auto different =
            std::ranges::mismatch(common, name, [](char a, char b) { return LowerCase(a) == LowerCase(b); });
        common = common.substr(0, static_cast<std::size_t>(different.in1 - common.begin()));
    }
    return std::string(common.substr(0, common.rfind('_') + 1));
}

}  // namespace ombrix::text
