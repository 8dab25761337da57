#include "text/wrapping.h"

#include <algorithm>

namespace ombrix::text {

namespace {

constexpr std::string_view kCommandLine = "  ombrix ";
constexpr std::size_t kIndent = 4;  ///< of further lines

/// Counts characters of UTF-8.
std::size_t Width(std::string_view text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (static_cast<unsigned char>(c) & 0xc0) != 0x80; }));
}

/// Placeholders in brackets are one word.
std::size_t EndOfWord(std::string_view text, std::size_t begin) {
    int depth = 0;
    for (std::size_t at = begin; at < text.size(); ++at) {
        if (text[at] == '[') ++depth;
        if (text[at] == ']') --depth;
        if (text[at] == ' ' && depth <= 0) return at;
    }
    return text.size();
}

/// Puts `ending` before each line break that it makes.
std::string Broken(std::string_view text, std::size_t width, std::size_t indent, std::string_view ending) {
    std::string wrapped;
    std::size_t column = 0;
    while (!text.empty()) {
        // The blanks before a word belong to it, so that those that line columns up stay.
        const std::size_t begin = std::min(text.find_first_not_of(' '), text.size());
        const std::size_t end = EndOfWord(text, begin);
        const std::string_view word = text.substr(begin, end - begin);
        const bool isLast = end == text.size();
        if (column > indent && column + begin + Width(word) + (isLast ? 0 : ending.size()) > width) {
            wrapped += ending;
            wrapped += '\n' + std::string(indent, ' ');
            wrapped += word;
            column = indent + Width(word);
        } else {
            wrapped += text.substr(0, end);
            column += begin + Width(word);
        }
        text.remove_prefix(end);
    }
    return wrapped;
}

}  // namespace

std::string Wrapped(std::string_view text, std::size_t width, std::size_t indent) {
    return Broken(text, width, indent, "");
}

std::string WrappedParagraphs(std::string_view text, std::size_t width) {
    std::string wrapped;
    std::string paragraph;
    const auto finish = [&] {
        if (!paragraph.empty()) wrapped += Wrapped(paragraph, width) + '\n';
        paragraph.clear();
    };
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        const std::string_view line = text.substr(0, end);
        text.remove_prefix(std::min(end + 1, text.size()));
        if (!line.empty() && line.front() != ' ') {
            paragraph += (paragraph.empty() ? "" : " ") + std::string(line);
            continue;
        }
        finish();
        const bool isToCopy = line.starts_with(kCommandLine) && line.find('[') == std::string_view::npos;
        wrapped += Broken(line, width, kIndent, isToCopy ? " \\" : "") + '\n';
    }
    finish();
    if (!wrapped.empty()) wrapped.pop_back();
    return wrapped;
}

}  // namespace ombrix::text
