#include "text/phrases.h"

#include "text/names.h"

namespace ombrix::text {

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

std::string Listed(const std::vector<std::string>& parts) {
    if (parts.size() < 2) return Join(parts);
    return Join({parts.begin(), parts.end() - 1}) + " and " + parts.back();
}

std::string OnOneLine(std::string_view text) {
    std::string line;
    for (const char letter : text) {
        const bool blank = letter == '\n' || letter == '\r' || letter == '\t' || letter == ' ';
        if (!blank) {
            line += letter;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    while (!line.empty() && (line.back() == ' ' || line.back() == '.')) line.pop_back();
    return line;
}

}  // namespace ombrix::text
