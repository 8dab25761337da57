#include "cli/values.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>

#include "catalogue/constants.h"
#include "cli/failure.h"
#include "cli/images/standard_input.h"
#include "text/names.h"
#include "text/numbers.h"
#include "text/phrases.h"

namespace ombrix::cli {

namespace {

std::optional<std::int64_t> ParseInteger(std::string_view text, const std::vector<catalogue::Constant>& constants) {
    if (const catalogue::Constant* constant = catalogue::FindConstant(constants, text)) return constant->value;
    return text::ParseNumber<std::int64_t>(text);
}

std::optional<bool> ParseBoolean(std::string_view text) {
    for (const char* word : {"true", "yes", "on", "1"}) {
        if (text::SameName(text, word)) return true;
    }
    for (const char* word : {"false", "no", "off", "0"}) {
        if (text::SameName(text, word)) return false;
    }
    return std::nullopt;
}

std::optional<std::pair<std::int64_t, std::int64_t>> ParsePoint(std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return std::nullopt;
    const auto x = text::ParseNumber<std::int64_t>(text.substr(0, comma));
    const auto y = text::ParseNumber<std::int64_t>(text.substr(comma + 1));
    if (!x || !y) return std::nullopt;
    return std::pair{*x, *y};
}

/// With a percent sign, hundredths.
std::optional<double> ParseDouble(std::string_view text) {
    if (!text.ends_with('%')) return text::ParseNumber<double>(text);
    const auto percent = text::ParseNumber<double>(text.substr(0, text.size() - 1));
    return percent ? std::optional(*percent / 100) : std::nullopt;
}

}  // namespace

bool CanBeTyped(std::string_view type) {
    constexpr std::array kTypes = {"Integer", "Boolean", "Double", "Point", "Picture"};
    return std::any_of(kTypes.begin(), kTypes.end(), [type](const char* known) { return text::SameName(type, known); });
}

TypedValue ParseValue(host::Host& host, const Setting& setting, std::string_view type,
                      const std::vector<catalogue::Constant>& constants, const std::string& receiver) {
    const std::string& text = setting.text;
    const auto refuse = [&](const std::string& wanted) {
        return UsageError(receiver + " takes " + wanted + ", not " + text::Quoted(text));
    };
    if (text::SameName(type, "Integer")) {
        if (const auto number = ParseInteger(text, constants)) return host::Value(*number);
        throw refuse(catalogue::IntegerForms(text, constants));
    }
    if (text::SameName(type, "Boolean")) {
        if (const auto truth = ParseBoolean(text)) return host::Value(*truth);
        throw refuse("true or false");
    }
    if (text::SameName(type, "Double")) {
        if (const auto number = ParseDouble(text)) return host::Value(*number);
        throw refuse("a number such as 0.5 or 50%");
    }
    if (text.empty()) return host::Value(nullptr);
    if (text::SameName(type, "Point")) {
        if (const auto point = ParsePoint(text)) return host::Value(host.NewPoint(point->first, point->second));
        throw refuse("a point as x,y, such as -20,40");
    }
    if (text::SameName(type, "Picture")) return ImageFile{InputFile(text)};
    throw refuse("a " + std::string(type) + ", which can be given in a program only");
}

std::string Shown(const host::Value& value) {
    if (value.IsNil()) return "nil";
    if (value.IsBoolean()) return value.AsBoolean() ? "true" : "false";
    if (value.IsInteger()) return std::to_string(value.AsInteger());
    if (value.IsDouble()) return text::Shown(value.AsDouble());
    if (value.AsObject().IsA("Point")) {
        const host::Point point(value.AsObject());
        return std::to_string(point.X()) + "," + std::to_string(point.Y());
    }
    return value.TypeName();
}

}  // namespace ombrix::cli
