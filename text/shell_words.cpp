#include "text/shell_words.h"

#include <algorithm>
#include <array>

#include "text/names.h"
#include "text/phrases.h"
#include "text/utf8.h"

namespace ombrix::text {
namespace {

bool IsPlain(char c) { return ContinuesName(c) || std::string_view("-./:=,+@%").find(c) != std::string_view::npos; }

bool IsControl(char c) { return static_cast<unsigned char>(c) < ' ' || c == 127; }

/// $'...', with numbers for all that is not plain ASCII.
std::string Escaped(std::string_view word) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string escaped = "$'";
    for (const char c : word) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < ' ' || byte >= 127 || c == '\'' || c == '\\') {
            escaped += {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
        } else {
            escaped += c;
        }
    }
    return escaped + "'";
}

}  // namespace

std::string ShellWord(std::string_view word) {
    if (!word.empty() && std::ranges::all_of(word, IsPlain)) return std::string(word);
    // Line breaks cannot be copied, and what is not UTF-8 cannot be shown.
    if (std::ranges::any_of(word, IsControl) || !IsUtf8(word)) return Escaped(word);
    std::string quoted = "'";
    for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string ShellLine(const std::vector<std::string>& words) {
    std::vector<std::string> safe;
    for (const std::string& word : words) safe.push_back(ShellWord(word));
    return Join(safe, " ");
}

}  // namespace ombrix::text
