#include "host/text.h"

#include <algorithm>
#include <numeric>

namespace ombrix::host {
namespace {

char LowerCase(char letter) { return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter; }

/// The fewest insertions, removals and replacements of letters that turn one name into the other.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i + 1;
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (LowerCase(a[i]) == LowerCase(b[j]) ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row[b.size()];
}

}  // namespace

bool SameName(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return LowerCase(x) == LowerCase(y); });
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    for (char& letter : result) letter = LowerCase(letter);
    return result;
}

std::string Quoted(std::string_view text) { return '"' + std::string(text) + '"'; }

std::string WithArticle(std::string_view name) {
    const bool vowel =
        !name.empty() && std::string_view("aeiou").find(LowerCase(name.front())) != std::string_view::npos;
    return (vowel ? "an " : "a ") + std::string(name);
}

std::string Join(const std::vector<std::string>& parts, std::string_view separator) {
    std::string result;
    for (const std::string& part : parts) {
        if (!result.empty()) result += separator;
        result += part;
    }
    return result;
}

std::string NearestName(std::string_view name, const std::vector<std::string>& names) {
    std::string nearest;
    std::size_t best = std::max<std::size_t>(1, name.size() / 3) + 1;
    for (const std::string& candidate : names) {
        const std::size_t distance = EditDistance(name, candidate);
        if (distance < best) {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

std::string Suggestion(std::string_view name, const std::vector<std::string>& names) {
    const std::string nearest = NearestName(name, names);
    if (!nearest.empty()) return "; did you mean " + Quoted(nearest) + "?";
    return names.empty() ? "; there are none" : "; there are: " + Join(names);
}

}  // namespace ombrix::host
