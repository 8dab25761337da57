#include "host/overloads.h"

#include <compare>
#include <optional>
#include <string_view>
#include <utility>

#include "host/instance.h"
#include "ombrix/error.h"
#include "text/names.h"
#include "text/phrases.h"
#include "text/suggestions.h"

namespace ombrix::host {
namespace {

struct Given {
    std::string_view name;         ///< empty when by position
    const Value* value = nullptr;  ///< null when not known yet
};

struct Fit {
    int leftOut = 0;
    int cost = 0;
    auto operator<=>(const Fit&) const = default;
};

/// The method's fit, or why it has none.
struct Attempt {
    std::optional<Fit> fit;
    Binding binding;
    std::string reason;
};

std::optional<std::size_t> PlaceOf(const Given& argument, std::size_t position,
                                   const std::vector<ParameterInfo>& parameters) {
    if (argument.name.empty()) return position < parameters.size() ? std::optional(position) : std::nullopt;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (text::SameName(parameters[i].name, argument.name)) return i;
    }
    return std::nullopt;
}

std::string NoPlace(const Given& argument, const std::vector<ParameterInfo>& parameters) {
    if (argument.name.empty()) return "takes " + std::to_string(parameters.size()) + " at most";
    std::vector<std::string> names;
    for (const ParameterInfo& parameter : parameters) names.push_back(parameter.name);
    return "has no parameter " + text::Quoted(argument.name) + text::Suggestion(argument.name, names);
}

Attempt Refused(std::string reason) { return {{}, {}, std::move(reason)}; }

Attempt Try(const Method& method, const std::vector<Given>& arguments) {
    const std::vector<ParameterInfo>& parameters = method.declaration.parameters;
    Binding binding{&method, std::vector<Value>(parameters.size())};
    std::vector<bool> given(parameters.size(), false);
    Fit fit;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::optional<std::size_t> place = PlaceOf(arguments[i], i, parameters);
        if (!place) return Refused(NoPlace(arguments[i], parameters));
        const ParameterInfo& parameter = parameters[*place];
        if (given[*place]) return Refused("is given " + text::Quoted(parameter.name) + " twice");
        given[*place] = true;
        if (arguments[i].value == nullptr) continue;
        const Value& value = *arguments[i].value;
        const int cost = Cost(value, parameter.type);
        if (cost < 0) {
            return Refused("needs " + parameter.type + " for " + text::Quoted(parameter.name) + ", not " +
                           value.TypeName());
        }
        binding.values[*place] = value;
        fit.cost += cost;
    }
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        if (given[i]) continue;
        if (parameters[i].required)
            return Refused("needs " + text::Quoted(parameters[i].name) + " (" + parameters[i].type + ")");
        ++fit.leftOut;
    }
    return {fit, std::move(binding), {}};
}

/// `Item.Pick(Picture, value: Integer)`; `Item.Pick(source, value)` without values.
std::string Shown(const std::string& callee, const std::vector<Given>& arguments) {
    std::vector<std::string> parts;
    for (const Given& argument : arguments) {
        std::string part(argument.name);
        if (argument.value != nullptr) part.append(part.empty() ? "" : ": ").append(argument.value->TypeName());
        parts.push_back(std::move(part));
    }
    return callee + "(" + text::Join(parts) + ")";
}

/// When no candidate fits, an attempt without fit that has all reasons.
Attempt Choose(const std::string& callee, const std::vector<const Method*>& candidates,
               const std::vector<Given>& arguments) {
    Attempt best;
    std::vector<std::string> equallyGood, reasons;
    for (const Method* method : candidates) {
        Attempt attempt = Try(*method, arguments);
        if (!attempt.fit) {
            reasons.push_back(text::Quoted(method->written) + " " + attempt.reason);
            continue;
        }
        if (best.fit && *attempt.fit > *best.fit) continue;
        if (!best.fit || *attempt.fit < *best.fit) equallyGood.clear();
        equallyGood.push_back(text::Quoted(method->written));
        best = std::move(attempt);
    }
    if (equallyGood.size() > 1) {
        throw Error(Shown(callee, arguments) + " is ambiguous: it could mean " + text::Join(equallyGood, " or "));
    }
    best.reason = text::Join(reasons, "; ");
    return best;
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
    std::vector<Given> given;
    for (const Argument& argument : arguments) {
        if (argument.Name().empty() && !given.empty() && !given.back().name.empty())
            throw Error(callee + ": arguments by position come before those by name");
        given.push_back({argument.Name(), &argument.Get()});
    }
    Attempt best = Choose(callee, candidates, given);
    if (!best.fit) throw Error(Shown(callee, given) + " cannot be called: " + best.reason);
    return std::move(best.binding);
}

const Method* ChooseByNames(const std::string& callee, const std::vector<const Method*>& candidates,
                            const std::vector<std::string>& arguments) {
    std::vector<Given> given;
    for (const std::string& name : arguments) given.push_back({name});
    const Attempt best = Choose(callee, candidates, given);
    return best.fit ? best.binding.method : nullptr;
}

}  // namespace ombrix::host
