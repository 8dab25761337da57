#include "cli/shell_words.h"

#include <glib.h>

#include <algorithm>
#include <cstdio>

#include "host/text.h"

namespace ombrix::cli {

namespace {

bool IsPlain(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
           std::string_view("_-./:=,+@%").find(c) != std::string_view::npos;
}

bool IsControl(char c) { return (c >= 0 && c < ' ') || c == 127; }

/// As $'...', with every byte that is no plain ASCII as a number.
std::string Escaped(std::string_view word) {
    std::string escaped = "$'";
    for (const char c : word) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < ' ' || byte >= 127 || c == '\'' || c == '\\') {
            char number[5];
            std::snprintf(number, sizeof number, "\\x%02x", static_cast<unsigned>(byte));
            escaped += number;
        } else {
            escaped += c;
        }
    }
    return escaped + "'";
}

}  // namespace

std::string ShellWord(std::string_view word) {
    if (!word.empty() && std::all_of(word.begin(), word.end(), IsPlain)) return std::string(word);
    // Names in an unknown encoding cannot be shown, and line ends cannot be copied.
    if (std::any_of(word.begin(), word.end(), IsControl) ||
        !g_utf8_validate(word.data(), static_cast<gssize>(word.size()), nullptr)) {
        return Escaped(word);
    }
    std::string quoted = "'";
    for (const char c : word) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string ShellLine(const std::vector<std::string>& words) {
    std::vector<std::string> safe;
    for (const std::string& word : words) safe.push_back(ShellWord(word));
    return host::Join(safe, " ");
}

}  // namespace ombrix::cli
