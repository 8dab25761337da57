#include "cli/images/bytes.h"

#include <cstring>

namespace ombrix::cli {

std::uint64_t GetNumber(std::span<const std::uint8_t> bytes, std::size_t at, std::size_t size, bool littleEndian) {
    std::uint64_t number = 0;
    for (std::size_t i = 0; i < size; ++i) number = number << 8 | bytes[at + (littleEndian ? size - 1 - i : i)];
    return number;
}

void PutNumber(std::span<std::uint8_t> bytes, std::size_t at, std::size_t size, bool littleEndian,
               std::uint64_t number) {
    for (std::size_t i = 0; i < size; ++i, number >>= 8) {
        bytes[at + (littleEndian ? i : size - 1 - i)] = static_cast<std::uint8_t>(number);
    }
}

bool StandsAt(std::span<const std::uint8_t> bytes, std::size_t at, std::string_view text) {
    return at <= bytes.size() && text.size() <= bytes.size() - at &&
           std::memcmp(bytes.data() + at, text.data(), text.size()) == 0;
}

}  // namespace ombrix::cli
