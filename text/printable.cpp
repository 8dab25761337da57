#include "text/printable.h"

#include "text/utf8.h"

namespace ombrix::text {

namespace {

/// `character` is one sequence of UTF-8.
bool IsControl(std::string_view character) {
    const auto byte = static_cast<unsigned char>(character.front());
    if (character.size() == 1) return byte < ' ' || byte == 127;
    const auto second = static_cast<unsigned char>(character[1]);
    if (character.size() == 2) return byte == 0xc2 && second < 0xa0;  // U+0080 to U+009F
    if (byte != 0xe2) return false;
    const auto third = static_cast<unsigned char>(character[2]);
    // Line separators and directions: U+2028 to U+202E, U+2066 to U+2069.
    return (second == 0x80 && third >= 0xa8 && third <= 0xae) || (second == 0x81 && third >= 0xa6 && third <= 0xa9);
}

}  // namespace

std::string Printable(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string printable;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        const std::string_view character = text.substr(0, length == 0 ? 1 : length);
        if (length != 0 && !IsControl(character)) {
            printable += character;
        } else {
            for (const char c : character) {
                const auto byte = static_cast<unsigned char>(c);
                printable += {'\\', 'x', kDigits[byte / 16], kDigits[byte % 16]};
            }
        }
        text.remove_prefix(character.size());
    }
    return printable;
}

}  // namespace ombrix::text
