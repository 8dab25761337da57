#include "text/utf8.h"

namespace ombrix::text {

std::size_t SequenceLength(std::string_view bytes) {
    const auto at = [bytes](std::size_t i) { return i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0; };
    const int first = at(0);
    if (first < 0x80) return 1;
    // 0xc0 and 0xc1 begin overlong forms; above 0xf4 lies nothing.
    if (first < 0xc2 || first > 0xf4) return 0;
    // Excludes overlong forms, surrogates, and what is above U+10FFFF.
    const int least = first == 0xe0 ? 0xa0 : first == 0xf0 ? 0x90 : 0x80;
    const int most = first == 0xed ? 0x9f : first == 0xf4 ? 0x8f : 0xbf;
    if (at(1) < least || at(1) > most) return 0;
    const std::size_t length = first < 0xe0 ? 2 : first < 0xf0 ? 3 : 4;
    for (std::size_t i = 2; i < length; ++i) {
        if (at(i) < 0x80 || at(i) > 0xbf) return 0;
    }
    return length;
}

bool IsUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        const std::size_t length = SequenceLength(bytes);
        if (length == 0) return false;
        bytes.remove_prefix(length);
    }
    return true;
}

}  // namespace ombrix::text
