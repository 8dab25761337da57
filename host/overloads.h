// Chooses between methods of one name.
#pragma once

#include <string>
#include <vector>

#include "host/registry.h"
#include "ombrix/value.h"

namespace ombrix::host {

/// How far a value is from a type: 0 for an exact match, -1 when it cannot be passed.
int Cost(const Value& value, std::string_view type);

/// A method with its arguments.
struct Binding {
    const Method* method = nullptr;
    std::vector<Value> values;  ///< one per parameter; nil for objects not given
};

/// The candidate that leaves the fewest objects out, and then has the nearest types. An Error, which names the method
/// `callee`, when none fits or two fit equally well. There is at least one candidate.
Binding ChooseOverload(const std::string& callee, const std::vector<const Method*>& candidates,
                       const std::vector<Argument>& arguments);

/// The same by names alone. Null when none fits.
const Method* ChooseByNames(const std::string& callee, const std::vector<const Method*>& candidates,
                            const std::vector<std::string>& arguments);

}  // namespace ombrix::host
