#include "text/numbers.h"

#include <array>

namespace ombrix::text {

std::string Shown(double number) {
    std::array<char, 32> digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

std::string Size(std::int64_t width, std::int64_t height) {
    return std::to_string(width) + "x" + std::to_string(height);
}

}  // namespace ombrix::text
