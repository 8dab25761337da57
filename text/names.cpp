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

}  // namespace ombrix::text
