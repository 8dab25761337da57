// Numbers as people type and read them.
#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace ombrix::text {

/// Nothing unless the whole text is a number. A sign is allowed.
template <class Number>
std::optional<Number> ParseNumber(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

/// The fewest digits that read back as this number.
std::string Shown(double number);

/// "640x480"
std::string Size(std::int64_t width, std::int64_t height);

}  // namespace ombrix::text
