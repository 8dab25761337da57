#include "host/overloads.h"

#include <compare>
#include <optional>

#include "host/error.h"
#include "host/instance.h"
#include "host/text.h"

namespace ombrix::host {
namespace {

struct Fit {
    int filled = 0;  ///< parameters that were not given
    int cost = 0;
    auto operator<=>(const Fit&) const = default;
};

/// How arguments fit one method, or why they do not.
struct Attempt {
    std::optional<Fit> fit;
    std::vector<Value> values;
    std::string reason;
};

std::optional<std::size_t> PlaceOf(const Argument& argument, std::size_t position,
                                   const std::vector<ParameterInfo>& parameters) {
    if (argument.Name().empty()) return position < parameters.size() ? std::optional(position) : std::nullopt;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (SameName(parameters[i].name, argument.Name())) return i;
    }
    return std::nullopt;
}

std::string NoPlace(const Argument& argument, const std::vector<ParameterInfo>& parameters) {
    if (argument.Name().empty()) return "takes " + std::to_string(parameters.size()) + " at most";
    std::vector<std::string> names;
    for (const ParameterInfo& parameter : parameters) names.push_back(parameter.name);
    return "has no parameter " + Quoted(argument.Name()) + Suggestion(argument.Name(), names);
}

Attempt Try(const Method& method, const std::vector<Argument>& arguments) {
    const std::vector<ParameterInfo>& parameters = method.declaration.parameters;
    Attempt attempt;
    std::vector<bool> given(parameters.size(), false);
    attempt.values.resize(parameters.size());
    Fit fit;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::optional<std::size_t> place = PlaceOf(arguments[i], i, parameters);
        if (!place) return {{}, {}, NoPlace(arguments[i], parameters)};
        const ParameterInfo& parameter = parameters[*place];
        if (given[*place]) return {{}, {}, "is given " + Quoted(parameter.name) + " twice"};
        const int cost = Cost(arguments[i].Get(), parameter.type);
        if (cost < 0) {
            return {{},
                    {},
                    "needs " + parameter.type + " for " + Quoted(parameter.name) + ", not " +
                        arguments[i].Get().TypeName()};
        }
        given[*place] = true;
        attempt.values[*place] = arguments[i].Get();
        fit.cost += cost;
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (given[i]) continue;
        if (KindOf(parameters[i].type) != Kind::Object)
            return {{}, {}, "needs " + Quoted(parameters[i].name) + " (" + parameters[i].type + ")"};
        ++fit.filled;
    }
    attempt.fit = fit;
    return attempt;
}

std::string TypesOf(const std::vector<Argument>& arguments) {
    std::vector<std::string> parts;
    for (const Argument& argument : arguments) {
        parts.push_back((argument.Name().empty() ? "" : argument.Name() + ": ") + argument.Get().TypeName());
    }
    return "(" + Join(parts) + ")";
}

}  // namespace

int Cost(const Value& value, std::string_view type) {
    switch (KindOf(type)) {
        case Kind::Integer:
            return value.IsInteger() ? 0 : -1;
        case Kind::Boolean:
            return value.IsBoolean() ? 0 : -1;
        case Kind::Double:
            return value.IsDouble() ? 0 : value.IsInteger() ? 1 : -1;
        case Kind::Object:
            if (value.IsNil()) return 0;
            return value.IsObject() ? Distance(*value.AsObject().Handle()->type, type) : -1;
    }
    return -1;
}

Binding ChooseOverload(const std::string& callee, const std::vector<const Method*>& candidates,
                       const std::vector<Argument>& arguments) {
    for (std::size_t i = 1; i < arguments.size(); ++i) {
        if (arguments[i].Name().empty() && !arguments[i - 1].Name().empty())
            throw Error(callee + ": arguments by position come before those by name");
    }
    Binding best;
    std::optional<Fit> bestFit;
    std::vector<std::string> equallyGood, reasons;
    for (const Method* method : candidates) {
        Attempt attempt = Try(*method, arguments);
        if (!attempt.fit) {
            reasons.push_back(Quoted(method->written) + " " + attempt.reason);
            continue;
        }
        if (bestFit && *attempt.fit > *bestFit) continue;
        if (!bestFit || *attempt.fit < *bestFit) equallyGood.clear();
        equallyGood.push_back(Quoted(method->written));
        bestFit = attempt.fit;
        best = {method, std::move(attempt.values)};
    }
    const std::string call = callee + TypesOf(arguments);
    if (!bestFit) throw Error(call + " cannot be called: " + Join(reasons, "; "));
    if (equallyGood.size() > 1) throw Error(call + " is ambiguous: it could mean " + Join(equallyGood, " or "));
    return best;
}

}  // namespace ombrix::host
