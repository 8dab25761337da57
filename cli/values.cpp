#include "cli/values.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <utility>

#include "cli/failure.h"
#include "cli/text.h"
#include "host/text.h"

namespace ombrix::cli {

using host::SameName;

namespace {

/// The whole text as a number, with or without a sign.
template <class Number>
std::optional<Number> ParseNumber(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<std::int64_t> ParseInteger(std::string_view text, const std::vector<host::ConstantInfo>& constants) {
    for (const host::ConstantInfo& constant : constants) {
        if (SameName(constant.name, text)) return constant.value;
    }
    return ParseNumber<std::int64_t>(text);
}

std::optional<bool> ParseBoolean(std::string_view text) {
    for (const char* word : {"true", "yes", "on", "1"}) {
        if (SameName(text, word)) return true;
    }
    for (const char* word : {"false", "no", "off", "0"}) {
        if (SameName(text, word)) return false;
    }
    return std::nullopt;
}

std::optional<std::pair<std::int64_t, std::int64_t>> ParsePoint(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const auto x = ParseNumber<std::int64_t>(text.substr(0, comma));
    const auto y = ParseNumber<std::int64_t>(text.substr(comma + 1));
    if (!x || !y) return std::nullopt;
    return std::pair{*x, *y};
}

/// What would have worked in place of a text that is no Integer.
std::string IntegerForms(const std::string& text, const std::vector<host::ConstantInfo>& constants) {
    if (text.find_first_not_of("+-0123456789") == std::string::npos && !text.empty()) {
        return "a whole number that 64 bits can hold";
    }
    std::vector<std::string> names;
    for (const host::ConstantInfo& constant : constants) names.push_back(constant.name);
    const std::string nearest = host::NearestName(text, names);
    return nearest.empty() ? "a whole number" : "a whole number or the name of a constant such as " + nearest;
}

std::string ShownNumber(double number) {
    std::array<char, 32> digits;
    return {digits.data(), std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr};
}

}  // namespace

bool CanBeTyped(std::string_view type) {
    constexpr std::array kTypes = {"Integer", "Boolean", "Double", "Point", "Picture"};
    return std::any_of(kTypes.begin(), kTypes.end(), [type](const char* known) { return SameName(type, known); });
}

TypedValue ParseValue(host::Host& host, const Setting& setting, std::string_view type,
                      const std::vector<host::ConstantInfo>& constants, const std::string& receiver) {
    const std::string& text = setting.text;
    const auto refuse = [&](const std::string& wanted) {
        return UsageError(receiver + " takes " + wanted + ", not " + host::Quoted(text));
    };
    if (SameName(type, "Integer")) {
        if (const auto number = ParseInteger(text, constants)) return host::Value(*number);
        throw refuse(IntegerForms(text, constants));
    }
    if (SameName(type, "Boolean")) {
        if (const auto truth = ParseBoolean(text)) return host::Value(*truth);
        throw refuse("true or false");
    }
    if (SameName(type, "Double")) {
        if (const auto number = ParseNumber<double>(text)) return host::Value(*number);
        throw refuse("a number such as 0.5");
    }
    if (text.empty()) return host::Value(nullptr);
    if (SameName(type, "Point")) {
        if (const auto point = ParsePoint(text)) return host::Value(host.NewPoint(point->first, point->second));
        throw refuse("a point as x,y, such as -20,40");
    }
    if (SameName(type, "Picture")) return ImageFile{text};
    throw refuse("a " + std::string(type) + ", which can be given in a program only");
}

std::string Shown(const host::Value& value) {
    if (value.IsNil()) return "nil";
    if (value.IsBoolean()) return value.AsBoolean() ? "true" : "false";
    if (value.IsInteger()) return std::to_string(value.AsInteger());
    if (value.IsDouble()) return ShownNumber(value.AsDouble());
    if (value.AsObject().IsA("Point")) {
        const host::Point point(value.AsObject());
        return std::to_string(point.X()) + "," + std::to_string(point.Y());
    }
    return value.TypeName();
}

}  // namespace ombrix::cli
