#include "cli/text.h"

#include "host/text.h"

namespace ombrix::cli {

std::string Listed(const std::vector<std::string>& items) {
    if (items.size() < 2) return host::Join(items);
    return host::Join({items.begin(), items.end() - 1}) + " and " + items.back();
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

}  // namespace ombrix::cli
