#include "bridges/frei0r/parameters.h"

#include <algorithm>
#include <cmath>

namespace ombrix::bridge {
namespace {

std::string Shown(double value) {
    std::string text = std::to_string(value);
    text.erase(text.find_last_not_of('0') + 1);
    if (text.ends_with('.')) text.pop_back();
    return text;
}

Parameter Ranged(const Property& property, double low, double high) {
    return {&property, F0R_PARAM_DOUBLE, low, high,
            WithoutStop(property.description) + ". 0 to 1 stand for " + Shown(low) + " to " + Shown(high)};
}

Parameter Named(const Property& property, const std::string& forms) {
    return {&property, F0R_PARAM_STRING, 0, 1, WithoutStop(property.description) + ". " + forms};
}

std::string Words(const std::vector<Constant>& constants) {
    std::string words;
    for (const Constant& constant : constants) words += (words.empty() ? "" : ", ") + constant.word;
    return words;
}

Parameter ParameterOf(const Property& property) {
    switch (property.type) {
        case Type::Boolean:
            return {&property, F0R_PARAM_BOOL, 0, 1, WithoutStop(property.description)};
        case Type::Number:
            if (property.bounds) return Ranged(property, property.bounds->first, property.bounds->second);
            return Named(property, "A number");
        case Type::Point:
            return Named(property, "x,y in pixels");
        default:
            if (!property.constants.empty()) return Named(property, "One of " + Words(property.constants));
            if (!property.range) return Named(property, "A whole number");
            return Ranged(property, static_cast<double>(property.range->first),
                          static_cast<double>(property.range->second));
    }
}

}  // namespace

double Parameter::Meant(double share) const {
    const double value = low + std::clamp(share, 0.0, 1.0) * (high - low);
    return property->type == Type::Integer ? std::round(value) : value;
}

double Parameter::ShareOf(double value) const { return high > low ? (value - low) / (high - low) : 0; }

std::vector<Parameter> ParametersOf(const Effect& effect) {
    std::vector<Parameter> parameters;
    for (const Property& property : effect.properties) {
        if (property.inherited || property.type == Type::Picture || property.type == Type::Other) continue;
        parameters.push_back(ParameterOf(property));
    }
    const auto rank = [](const Parameter& each) {
        if (each.type == F0R_PARAM_BOOL) return 1000;
        return each.property->position.value_or(999);
    };
    std::ranges::stable_sort(parameters, {}, rank);
    return parameters;
}

std::string InitialText(const Parameter& parameter) {
    const Property& property = *parameter.property;
    if (const auto* point = std::get_if<Point>(&property.initial)) {
        return std::to_string(point->x) + "," + std::to_string(point->y);
    }
    if (const auto* number = std::get_if<double>(&property.initial)) return Shown(*number);
    const auto* integer = std::get_if<std::int64_t>(&property.initial);
    if (integer == nullptr) return "";
    if (property.constants.empty()) return std::to_string(*integer);
    const auto initial = std::ranges::find(property.constants, *integer, &Constant::value);
    return initial != property.constants.end() ? initial->word : property.constants.front().word;
}

double InitialValue(const Parameter& parameter) {
    const Property& property = *parameter.property;
    if (const auto* boolean = std::get_if<bool>(&property.initial)) return *boolean ? 1 : 0;
    double initial = parameter.low;
    if (const auto* integer = std::get_if<std::int64_t>(&property.initial)) initial = static_cast<double>(*integer);
    if (const auto* number = std::get_if<double>(&property.initial)) initial = *number;
    const bool isTaken = !property.refusesDefault && initial >= parameter.low && initial <= parameter.high;
    return parameter.ShareOf(isTaken ? initial : parameter.low);
}

}  // namespace ombrix::bridge
