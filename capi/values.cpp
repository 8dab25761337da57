#include "capi/values.h"

#include <charconv>
#include <optional>
#include <string>

#include "capi/session.h"

namespace ombrix::capi {
namespace {

template <class Number>
std::optional<Number> ReadNumber(std::string_view text) {
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    Number number{};
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return number;
}

std::optional<double> ReadShare(std::string_view text) {
    if (!text.ends_with('%')) return ReadNumber<double>(text);
    text.remove_suffix(1);
    const auto percent = ReadNumber<double>(text);
    return percent ? std::optional(*percent / 100) : std::nullopt;
}

std::optional<bool> ReadBoolean(std::string_view text) {
    for (const std::string_view word : {"true", "yes", "on", "1"}) {
        if (text == word) return true;
    }
    for (const std::string_view word : {"false", "no", "off", "0"}) {
        if (text == word) return false;
    }
    return std::nullopt;
}

host::Value ReadPoint(host::Host& host, std::string_view text) {
    const std::size_t comma = text.find(',');
    if (comma == std::string_view::npos) return nullptr;
    const auto x = ReadNumber<std::int64_t>(text.substr(0, comma));
    const auto y = ReadNumber<std::int64_t>(text.substr(comma + 1));
    return x && y ? host::Value(host.NewPoint(*x, *y)) : host::Value();
}

host::Value ReadConstant(const catalogue::Effect& effect, const catalogue::Property& property, std::string_view text) {
    const catalogue::Constant* constant = catalogue::FindConstant(effect.ConstantsOf(property), text);
    return constant == nullptr ? host::Value() : host::Value(constant->value);
}

}  // namespace

host::Value ReadValue(host::Host& host, const catalogue::Effect& effect, const catalogue::Property& property,
                      std::string_view text) {
    const std::string name = effect.Name() + "." + property.name;
    host::Value value;
    std::string taken = property.type;
    if (property.type == "Integer") {
        taken = catalogue::IntegerForms(std::string(text), effect.ConstantsOf(property));
        value = ReadConstant(effect, property, text);
        if (const auto number = ReadNumber<std::int64_t>(text)) value = *number;
    } else if (property.type == "Double") {
        taken = "a number, or one with %";
        if (const auto number = ReadShare(text)) value = *number;
    } else if (property.type == "Boolean") {
        taken = "true or false";
        if (const auto boolean = ReadBoolean(text)) value = *boolean;
    } else if (property.type == "Point") {
        taken = "two whole numbers as x,y";
        value = ReadPoint(host, text);
    } else {
        throw Failure{OMBRIX_INVALID_ARGUMENT, name + " is a " + property.type + ", which no text says"};
    }
    if (value.IsNil()) {
        throw Failure{OMBRIX_INVALID_ARGUMENT, name + " takes " + taken + ", not \"" + std::string(text) + "\""};
    }
    return value;
}

}  // namespace ombrix::capi
